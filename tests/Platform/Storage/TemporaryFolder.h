#pragma once

#include "Platform/Storage/StoredFile.h"
#include "Utils/FileURL.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <unistd.h>

namespace tamsy {

/// A directory of real files, named by bytes, that ends with the test.
class TemporaryFolder {
  public:
    TemporaryFolder() { directory_.setAutoRemove(false); }
    Q_DISABLE_COPY_MOVE(TemporaryFolder)
    /// Qt can't remove names that it can't decode, nor paths longer than the system takes.
    ~TemporaryFolder() { QProcess::execute(u"rm"_qs, {u"-rf"_qs, directory_.path()}); }

    [[nodiscard]] QByteArray path() const { return QFile::encodeName(directory_.path()); }
    [[nodiscard]] QByteArray path(const QByteArray& name) const { return path() + '/' + name; }

    /// Writes the file `name` and the folders above it.
    void write(const QByteArray& name, QByteArrayView content = {}) const {
        EXPECT_TRUE(StoredFile(path(name)).replace(content)) << name.constData();
    }
    [[nodiscard]] QByteArray read(const QByteArray& name) const {
        return StoredFile(path(name)).read().value_or("(none)");
    }
    /// The names that begin with `start`, in no order.
    [[nodiscard]] QStringList names(const char* start = "") const {
        return QDir(directory_.path())
            .entryList({QLatin1String(start) + QLatin1Char('*')},
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] mode_t mode(const QByteArray& name) const {
        struct stat status {};
        return ::lstat(path(name).constData(), &status) == 0 ? status.st_mode & 0777U : 0;
    }

  private:
    QTemporaryDir directory_;
};

/// The address of what is in the folder, or its own.
[[nodiscard]] inline FileURL urlOf(const TemporaryFolder& folder, const QByteArray& name = {}) {
    return FileURL::fromPath(folder.path(name));
}

} // namespace tamsy
