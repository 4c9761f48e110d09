#pragma once

#include "Platform/Storage/UserDefaults.h"
#include "Services/Library/FolderLibraryService.h"
#include "Services/Metadata/AudioMetadata.h"
#include "ViewModels/LibraryViewModel.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace tamsy {

/// A picker that answers at once with what the test chose.
class FakeFolderPanel : public FolderPanel {
  public:
    std::optional<FileURL> answer;

    void runModal(const QString& /*prompt*/, const QString& /*message*/,
                  Completion completion) override {
        completion(answer);
    }
};

/// A real library service over real folders of empty files, whose tags are their names.
class LibraryFixture {
  public:
    LibraryFixture() {
        auto service = std::make_unique<FolderLibraryService>(defaults, [](const FileURL& url) {
            const QString name = url.nameWithoutExtensionText();
            const auto part = [&](int number) { return name.section(u'~', number, number); };
            return AudioMetadata{part(0), part(1), part(2), 1.0, {}};
        });
        auto owned = std::make_unique<FakeFolderPanel>();
        panel = owned.get();
        library = std::make_unique<LibraryViewModel>(std::move(service), std::move(owned));
    }

    /// A new folder with these files; each name is title, artist and album, parted by tildes.
    FileURL makeFolder(const QString& name, const QStringList& files) {
        QDir root(directory.path());
        root.mkdir(name);
        for (const QString& file : files) {
            QFile created(root.filePath(name + u'/' + file + u".mp3"_qs));
            EXPECT_TRUE(created.open(QIODevice::WriteOnly));
        }
        return FileURL::fromPath(root.filePath(name).toUtf8());
    }

    /// Adds the folder through the panel and waits until its tracks are there.
    void add(const FileURL& url, qsizetype tracks) {
        panel->answer = url;
        library->addFolderViaPanel();
        ASSERT_TRUE(QTest::qWaitFor([&] {
            return !library->folders().isEmpty() && library->folders().constLast().url == url &&
                   library->folders().constLast().tracks.size() == tracks;
        }));
    }

    /// Makes the folder and adds it.
    void add(const QString& name, const QStringList& files) {
        add(makeFolder(name, files), files.size());
    }

    QTemporaryDir directory;
    UserDefaults defaults{QByteArray(directory.path().toUtf8() + "/configuration")};
    FakeFolderPanel* panel = nullptr;
    std::unique_ptr<LibraryViewModel> library;
};

} // namespace tamsy
