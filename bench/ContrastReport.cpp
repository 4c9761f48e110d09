// How well the title can be read on the Now Playing window: its contrast with the ground right
// beside the strokes, over covers of random colours. Draws the real window, so it wants a display.

#include "Playback/FakeEngine.h"
#include "Services/Library/FolderLibraryService.h"
#include "ViewModels/LibraryViewModel.h"
#include "ViewModels/LyricsFontSize.h"
#include "ViewModels/PlayerViewModel.h"
#include "Views/NowPlaying/NowPlayingWindowController.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QQmlEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtQml/QQmlExtensionPlugin>

#include <algorithm>
#include <cmath>
#include <cstdio>

Q_IMPORT_QML_PLUGIN(Tamsy_NowPlayingPlugin)
Q_IMPORT_QML_PLUGIN(Tamsy_ControlsPlugin)
Q_IMPORT_QML_PLUGIN(Tamsy_LibraryPlugin)

using namespace tamsy;

namespace {

constexpr int covers = 120;
constexpr QRect titlePlace(450, 500, 300, 30); // in the window at its first size

class NoPanel : public FolderPanel {
    void runModal(const QString& /*prompt*/, const QString& /*message*/,
                  Completion completion) override {
        completion(std::nullopt);
    }
};

/// Two random colours, one over the other; every fourth cover nearly white, the first one dark.
QImage randomCover(int number) {
    QRandomGenerator random(static_cast<quint32>(number));
    const auto color = [&] {
        const bool isPale = number % 4 == 0;
        return QColor::fromHsvF(static_cast<float>(random.generateDouble()),
                                static_cast<float>(random.generateDouble() * (isPale ? 0.1 : 1)),
                                static_cast<float>(isPale ? 0.96 : random.generateDouble()));
    };
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(number == 0 ? QColor(20, 10, 40) : color());
    if (number == 0)
        return image;
    QPainter(&image).fillRect(0, 30, 64, 34, color());
    return image;
}

double luminance(QRgb pixel) {
    const auto linear = [](int part) {
        const double value = part / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(pixel)) + 0.7152 * linear(qGreen(pixel)) +
           0.0722 * linear(qBlue(pixel));
}

/// Where the title's strokes are: what is bright over a dark cover.
std::vector<bool> strokesOf(const QImage& title) {
    constexpr double bright = 0.35;
    std::vector<bool> strokes;
    for (int y = 0; y < title.height(); ++y) {
        for (int x = 0; x < title.width(); ++x)
            strokes.push_back(luminance(title.pixel(x, y)) > bright);
    }
    return strokes;
}

/// White against the mean of what lies two pixels beside a stroke (WCAG 2.1).
double contrast(const QImage& title, const std::vector<bool>& strokes) {
    constexpr int reach = 2;
    const auto isStroke = [&](int x, int y) {
        return strokes[static_cast<std::size_t>(y) * static_cast<std::size_t>(title.width()) +
                       static_cast<std::size_t>(x)];
    };
    const auto hasStrokeAt = [&](int x, int y, int distance) {
        return isStroke(x - distance, y) || isStroke(x + distance, y) ||
               isStroke(x, y - distance) || isStroke(x, y + distance);
    };
    double sum = 0;
    int count = 0;
    for (int y = reach; y < title.height() - reach; ++y) {
        for (int x = reach; x < title.width() - reach; ++x) {
            const bool isOnEdge = isStroke(x, y) || hasStrokeAt(x, y, 1);
            if (isOnEdge || !hasStrokeAt(x, y, reach))
                continue;
            sum += luminance(title.pixel(x, y));
            ++count;
        }
    }
    return count == 0 ? 1 : 1.05 / (sum / count + 0.05);
}

void wait(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (!timer.hasExpired(milliseconds))
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
}

} // namespace

int main(int argc, char** argv) {
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    QGuiApplication application(argc, argv);
    const QTemporaryDir directory;
    UserDefaults defaults(QFile::encodeName(directory.path()));
    LyricsFontSize fontSize(defaults);
    LibraryViewModel library(std::make_unique<FolderLibraryService>(
                                 defaults, [](const FileURL&) { return AudioMetadata(); }),
                             std::make_unique<NoPanel>());
    ArtworkLoader loader({.readMetadata =
                              [](const FileURL& url) {
                                  AudioMetadata metadata;
                                  metadata.artwork =
                                      randomCover(url.parent().lastPathComponentText().toInt());
                                  return metadata;
                              },
                          .fallbackCover = [] { return QImage(); },
                          .applicationSupportDirectory = QFile::encodeName(directory.path())});
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQuickWindow* window = nullptr;
    PlayerViewModel player(
        std::make_unique<FakeEngine>(),
        {.visibility = nullptr,
         .artworkLoader = &loader,
         .makeNowPlayingWindow = [&](PlayerViewModel& playerVM, LibraryViewModel& libraryVM) {
             auto made = std::make_unique<NowPlayingWindowController>(engine, playerVM, libraryVM,
                                                                      fontSize);
             window = made->window();
             return made;
         }});
    player.showNowPlayingWindow(&player, &library);
    if (window == nullptr)
        return 1;
    std::vector<double> found;
    std::vector<bool> strokes;
    for (int number = 0; number <= covers; ++number) {
        const QByteArray path = "/music/" + QByteArray::number(number) + "/Paper Lanterns.mp3";
        player.play(FileURL::fromPath(path));
        wait(number == 0 ? 3000 : 400);
        const QImage title = window->grabWindow().copy(titlePlace);
        if (number == 0)
            strokes = strokesOf(title);
        else
            found.push_back(contrast(title, strokes));
    }
    player.endNowPlayingWindow();
    std::ranges::sort(found);
    const auto at = [&](double share) {
        return found[static_cast<std::size_t>(share * static_cast<double>(found.size() - 1))];
    };
    std::printf("contrast of the title over %d random covers: least %.1f, 5 %% %.1f, median %.1f, "
                "most %.1f\n",
                covers, at(0), at(0.05), at(0.5), at(1));
    return 0;
}
