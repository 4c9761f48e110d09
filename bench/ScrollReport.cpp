// The cost of covers while the table scrolls: the time from a step to its frame, and the memory
// after ten thousand rows, compared with the same table without covers. Needs a display.

#include "BigLibrary.h"
#include "FlacWithCover.h"
#include "Playback/FakeEngine.h"
#include "Services/Library/FolderLibraryService.h"
#include "Services/Library/FolderPersistence.h"
#include "ViewModels/LibraryViewModel.h"
#include "ViewModels/PlayerViewModel.h"
#include "Views/Controls/CoverProvider.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickView>
#include <QTemporaryDir>
#include <QtQml/QQmlExtensionPlugin>

#include <algorithm>
#include <cstdio>

Q_IMPORT_QML_PLUGIN(Tamsy_ControlsPlugin)
Q_IMPORT_QML_PLUGIN(Tamsy_LibraryPlugin)

using namespace tamsy;

namespace {

constexpr int rows = 10'000;
constexpr double rowHeight = 36;
constexpr int rowsAStep = 10;

class NoPanel : public FolderPanel {
    void runModal(const QString& /*prompt*/, const QString& /*message*/,
                  Completion /*completion*/) override {}
};

/// The tracks of a folder: each a file with its own cover, or all without.
TrackList makeTracks(const QTemporaryDir& directory, bool withCovers) {
    TrackList tracks = makeBigFolder(FileURL::fromPath(QFile::encodeName(directory.path())), rows);
    QImage cover(300, 300, QImage::Format_RGB32);
    cover.fill(Qt::darkCyan);
    const QString original = directory.filePath(QStringLiteral("original"));
    QFile file(original);
    if (file.open(QIODevice::WriteOnly))
        file.write(flacWithCover(cover, "jpeg"));
    file.close();
    for (qsizetype number = 0; number < tracks.size(); ++number) {
        Track& track = tracks[number];
        track.url = FileURL();
        if (!withCovers)
            continue;
        const QString path = directory.filePath(QString::number(number) + u".flac");
        QFile::link(original, path);
        track.url = FileURL::fromPath(QFile::encodeName(path));
    }
    return tracks;
}

double residentMegabytes() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').constFirst().toDouble() / 1024;
    }
    return 0;
}

/// The first descendant with rows.
QQuickItem* listBelow(QQuickItem* item) {
    if (item->property("contentY").isValid() && item->property("count").toInt() == rows)
        return item;
    for (QQuickItem* child : item->childItems()) {
        if (QQuickItem* found = listBelow(child))
            return found;
    }
    return nullptr;
}

void scroll(const char* name, bool withCovers) {
    const QTemporaryDir directory;
    UserDefaults defaults(QFile::encodeName(directory.path()) + "/configuration");
    FolderPersistence store(defaults);
    const auto saved = store.saveBookmark(FileURL::fromPath(QFile::encodeName(directory.path())));
    if (!saved)
        return;
    store.saveTracks(saved->id, makeTracks(directory, withCovers));
    LibraryViewModel library(std::make_unique<FolderLibraryService>(
                                 defaults, [](const FileURL&) { return AudioMetadata(); }),
                             std::make_unique<NoPanel>());
    PlayerViewModel player(std::make_unique<FakeEngine>());

    QQuickView view;
    view.engine()->addImageProvider(QStringLiteral("covers"), new CoverProvider);
    view.engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    view.setInitialProperties({{QStringLiteral("library"), QVariant::fromValue(&library)},
                               {QStringLiteral("player"), QVariant::fromValue(&player)}});
    view.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Tamsy/Library/TrackListView.qml")));
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.resize(840, 640);
    view.show();
    QQuickItem* list = listBelow(view.rootObject());
    if (list == nullptr)
        return;
    const auto frame = [&view] {
        QEventLoop loop;
        QObject::connect(&view, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
        view.update();
        loop.exec();
    };
    for (int warm = 0; warm < 20; ++warm)
        frame();
    const double before = residentMegabytes();
    std::vector<double> times;
    for (int row = 0; row < rows - 20; row += rowsAStep) {
        QElapsedTimer timer;
        timer.start();
        list->setProperty("contentY", row * rowHeight);
        frame();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::ranges::sort(times);
    std::printf("scroll, %-15s median %5.1f ms, 99 %% %5.1f ms, worst %5.1f ms, memory +%.1f MB\n",
                name, times[times.size() / 2], times[times.size() * 99 / 100], times.back(),
                residentMegabytes() - before);
}

} // namespace

int main(int argc, char** argv) {
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    QGuiApplication application(argc, argv);
    scroll("without covers", false);
    scroll("covers unknown", true);
    return 0;
}
