// The contrast of text in the Now Playing window with the background right beside the strokes,
// shadow included, over covers of random colours. Draws the real window, so it needs a display:
// contrast_report [covers [directory for the pictures of the worst ones]]

#include "Playback/FakeEngine.h"
#include "Services/Library/FolderLibraryService.h"
#include "ViewModels/LibraryViewModel.h"
#include "ViewModels/LyricsFontSize.h"
#include "ViewModels/PlayerViewModel.h"
#include "Views/NowPlaying/NowPlayingWindowController.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/QQmlExtensionPlugin>

#include <algorithm>
#include <cmath>
#include <cstdio>

Q_IMPORT_QML_PLUGIN(Tamsy_NowPlayingPlugin)
Q_IMPORT_QML_PLUGIN(Tamsy_ControlsPlugin)
Q_IMPORT_QML_PLUGIN(Tamsy_LibraryPlugin)

using namespace tamsy;

namespace {

constexpr int defaultCovers = 1000;
constexpr int patience = 30000;      // milliseconds
constexpr QColor ground(20, 10, 40); // the first cover's colour, on which every stroke is visible

/// Always chooses the same folder.
class OneFolder : public FolderPanel {
  public:
    explicit OneFolder(FileURL folder) : folder_(std::move(folder)) {}

    void runModal(const QString& /*prompt*/, const QString& /*message*/,
                  Completion completion) override {
        completion(folder_);
    }

  private:
    const FileURL folder_;
};

/// Two random colours, one above the other; the first cover is dark, every fourth nearly white.
QImage randomCover(int number) {
    QRandomGenerator random(static_cast<quint32>(number));
    const auto color = [&] {
        const bool isPale = number % 4 == 0;
        return QColor::fromHsvF(static_cast<float>(random.generateDouble()),
                                static_cast<float>(random.generateDouble() * (isPale ? 0.1 : 1)),
                                static_cast<float>(isPale ? 0.96 : random.generateDouble()));
    };
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(number == 0 ? ground : color());
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

/// A text in the window: its position, and which of its pixels are strokes.
class Sample {
  public:
    Sample(const char* sampleName, QString shownText)
        : name(sampleName), text(std::move(shownText)) {}

    const char* name;
    QString text;
    QRect rect;                     ///< in the window, in pixels
    std::vector<double> brightness; ///< of each pixel on a dark background, 0 to 1
    std::vector<double> contrasts;  ///< one per cover

    [[nodiscard]] bool isStroke(int x, int y) const { return at(x, y) > 0.35; }
    /// Whether the pixel is inside a stroke and not at its edge.
    [[nodiscard]] bool isCore(int x, int y) const { return at(x, y) > 0.8; }
    [[nodiscard]] bool hasStrokeAt(int x, int y, int distance) const {
        return isStroke(x - distance, y) || isStroke(x + distance, y) ||
               isStroke(x, y - distance) || isStroke(x, y + distance);
    }

  private:
    [[nodiscard]] double at(int x, int y) const {
        return brightness[static_cast<std::size_t>(y * rect.width() + x)];
    }
};

/// A track of each cover's album, and the texts in the window while it plays.
struct Scene {
    QString track;
    QByteArray lyrics;
    int everyCover; ///< 10 for every tenth cover
    std::vector<Sample> samples;
};

std::vector<Scene> makeScenes() {
    const QString current = QStringLiteral("Carry them home");
    const QString later = QStringLiteral("上山的路还很长");
    const QString title = QStringLiteral("Paper Lanterns");
    std::vector<Scene> scenes;
    scenes.push_back({title,
                      "[00:00.00]" + current.toUtf8() + "\n[00:10.00]" + later.toUtf8(),
                      1,
                      {{"title", title},
                       {"artist", QStringLiteral("Night Ferry")},
                       {"times", QStringLiteral("0:00")},
                       {"current line", current},
                       {"later line", later}}});
    scenes.push_back({QStringLiteral("none"), {}, 10, {{"no lyrics", QStringLiteral("暂无歌词")}}});
    return scenes;
}

/// Makes the folder of a cover with a track of each scene.
bool makeAlbum(const QString& folder, const std::vector<Scene>& scenes) {
    QDir().mkdir(folder);
    return std::ranges::all_of(scenes, [&](const Scene& scene) {
        const QString name = folder + QLatin1Char('/') + scene.track;
        QFile track(name + QStringLiteral(".mp3"));
        QFile sidecar(name + QStringLiteral(".lrc"));
        return track.open(QIODevice::WriteOnly) &&
               (scene.lyrics.isEmpty() || (sidecar.open(QIODevice::WriteOnly) &&
                                           sidecar.write(scene.lyrics) == scene.lyrics.size()));
    });
}

/// Finds the strokes: the bright pixels on a dark background.
void findStrokes(Sample& sample, const QImage& window) {
    const QImage picture = window.copy(sample.rect);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            sample.brightness.push_back(luminance(picture.pixel(x, y)));
    }
    const double brightest = std::ranges::max(sample.brightness);
    for (double& value : sample.brightness)
        value /= brightest;
}

/// The mean colour of some pixels.
class Mean {
  public:
    void add(QRgb pixel) {
        red_ += qRed(pixel);
        green_ += qGreen(pixel);
        blue_ += qBlue(pixel);
        ++count_;
    }
    [[nodiscard]] double luminanceOrZero() const {
        return count_ == 0 ? 0 : luminance(qRgb(red_ / count_, green_ / count_, blue_ / count_));
    }

  private:
    int red_ = 0;
    int green_ = 0;
    int blue_ = 0;
    int count_ = 0;
};

/// The contrast (WCAG 2.1) of the strokes with the pixels two beside them.
double contrast(const Sample& sample, const QImage& window) {
    constexpr int distance = 2;
    Mean ink;
    Mean beside;
    for (int y = distance; y < sample.rect.height() - distance; ++y) {
        for (int x = distance; x < sample.rect.width() - distance; ++x) {
            const QRgb pixel = window.pixel(sample.rect.topLeft() + QPoint(x, y));
            if (sample.isCore(x, y))
                ink.add(pixel);
            const bool isOnEdge = sample.isStroke(x, y) || sample.hasStrokeAt(x, y, 1);
            if (!isOnEdge && sample.hasStrokeAt(x, y, distance))
                beside.add(pixel);
        }
    }
    return (ink.luminanceOrZero() + 0.05) / (beside.luminanceOrZero() + 0.05);
}

/// The first descendant of `parent` that matches.
template <typename Fits>
QQuickItem* findItem(const QQuickItem* parent, const Fits& fits) {
    for (QQuickItem* item : parent->childItems()) {
        if (fits(item))
            return item;
        if (QQuickItem* found = findItem(item, fits))
            return found;
    }
    return nullptr;
}

bool isOfType(const QQuickItem* item, QByteArrayView type) {
    return QByteArrayView(item->metaObject()->className()).startsWith(type);
}

/// Whether it is drawn; a blurred line only shows its blur.
bool isShown(const QQuickItem* text) {
    const QQuickItem* item = text;
    while (item != nullptr && !isOfType(item, "LyricText"))
        item = item->parentItem();
    return (item != nullptr ? item : text)->isVisible();
}

QQuickItem* findText(const QQuickItem* parent, const QString& text) {
    return findItem(parent, [&](const QQuickItem* item) {
        return (isOfType(item, "ArtText") || isOfType(item, "LyricGlyphs")) &&
               item->property("text").toString() == text && isShown(item);
    });
}

void report(Sample& sample) {
    std::ranges::sort(sample.contrasts);
    const auto at = [&](double share) {
        return sample.contrasts[static_cast<std::size_t>(
            share * static_cast<double>(sample.contrasts.size() - 1))];
    };
    std::printf("contrast over %zu random covers, %s: minimum %.2f, 5 %% %.1f, median %.1f\n",
                sample.contrasts.size(), sample.name, at(0), at(0.05), at(0.5));
}

} // namespace

int main(int argc, char** argv) {
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    QGuiApplication application(argc, argv);
    const int covers = argc > 1 ? QByteArray(argv[1]).toInt() : defaultCovers;
    const QTemporaryDir directory;
    UserDefaults defaults(QFile::encodeName(directory.path()));
    LyricsFontSize fontSize(defaults);
    std::vector<Scene> scenes = makeScenes();
    const auto album = [&](int number) { return directory.filePath(QString::number(number)); };
    for (int number = 0; number <= covers; ++number) {
        if (!makeAlbum(album(number), scenes))
            return 1;
    }
    LibraryViewModel library(
        std::make_unique<FolderLibraryService>(defaults,
                                               [](const FileURL& url) {
                                                   AudioMetadata metadata;
                                                   metadata.title = url.nameWithoutExtensionText();
                                                   metadata.artist = QStringLiteral("Night Ferry");
                                                   return metadata;
                                               }),
        std::make_unique<OneFolder>(FileURL::fromPath(QFile::encodeName(directory.path()))));
    library.addFolderViaPanel();
    if (!QTest::qWaitFor([&] { return !library.allTracks().isEmpty(); }, patience))
        return 1;
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
    QMetaObject::invokeMethod(
        findItem(window->contentItem(),
                 [](const QQuickItem* item) { return isOfType(item, "NowPlayingView"); }),
        "toggleLyrics");

    for (int number = 0; number <= covers; ++number) {
        for (Scene& scene : scenes) {
            if (number % scene.everyCover != 0)
                continue;
            const QImage before = player.currentArtwork();
            player.play(FileURL::fromPath(
                QFile::encodeName(album(number) + QLatin1Char('/') + scene.track + u".mp3")));
            const auto hasCome = [&] {
                return player.currentArtwork().cacheKey() != before.cacheKey() &&
                       std::ranges::all_of(scene.samples, [&](const Sample& sample) {
                           return findText(window->contentItem(), sample.text) != nullptr;
                       });
            };
            if (!QTest::qWaitFor(hasCome, patience))
                return 1;
            QTest::qWait(number == 0 ? 1000 : 60);
            const QImage picture = window->grabWindow();
            bool isWorst = false;
            for (Sample& sample : scene.samples) {
                if (number == 0) {
                    const QQuickItem* item = findText(window->contentItem(), sample.text);
                    sample.rect = item->mapRectToScene(item->boundingRect())
                                      .toAlignedRect()
                                      .intersected(picture.rect());
                    findStrokes(sample, picture);
                } else {
                    sample.contrasts.push_back(contrast(sample, picture));
                    isWorst |= sample.contrasts.size() > 1 &&
                               sample.contrasts.back() == std::ranges::min(sample.contrasts);
                }
            }
            if (argc > 2 && isWorst)
                picture.save(QStringLiteral("%1/worst-%2-%3.png")
                                 .arg(QString::fromLocal8Bit(argv[2]), scene.track)
                                 .arg(number));
        }
    }
    player.endNowPlayingWindow();
    for (Scene& scene : scenes) {
        for (Sample& sample : scene.samples)
            report(sample);
    }
    return 0;
}
