// Covers: extracting colours, one step of the background, the first hundred thumbnails.

#include "FlacWithCover.h"
#include "Services/Artwork/ArtworkLoader.h"
#include "Utils/FileURL.h"
#include "Views/Background/ArtworkColors.h"
#include "Views/Background/GradientBlobs.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <cmath>

using namespace tamsy;
using Variant = ArtworkLoader::Variant;

namespace {

constexpr int files = 100;

/// Soft light and grain, which are hard to encode and to scale.
QImage photograph(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int grain = random.bounded(24);
            image.setPixel(
                x, y,
                qRgb(x * 200 / size.width() + grain, 120 + grain, y * 200 / size.height() + grain));
        }
    }
    return image;
}

void extractColors(benchmark::State& state) {
    const QImage cover = photograph({512, 512});
    for (const auto _ : state)
        benchmark::DoNotOptimize(extractTwoDominantColors(cover));
}
BENCHMARK(extractColors)->Unit(benchmark::kMicrosecond);

void signature(benchmark::State& state) {
    const QImage cover = photograph({512, 512});
    for (const auto _ : state)
        benchmark::DoNotOptimize(imageSignature(cover));
}
BENCHMARK(signature)->Unit(benchmark::kMicrosecond);

void blobPositionsOfOneStep(benchmark::State& state) {
    BlobConfigs configs;
    for (std::size_t index = 0; index < configs.size(); ++index)
        configs[index] = BlobConfig::random(static_cast<int>(index));
    const double time = secondsSinceReferenceDate();
    for (const auto _ : state) {
        for (const BlobConfig& config : configs)
            benchmark::DoNotOptimize(blobPosition(config, {1200, 800}, config.speed * time));
    }
}
BENCHMARK(blobPositionsOfOneStep)->Unit(benchmark::kNanosecond);

/// A hundred songs, each with its own cover of 1000 by 1000 pixels.
class Songs {
  public:
    Songs() {
        const QByteArray content = flacWithCover(photograph({1000, 1000}), "jpeg");
        for (int number = 0; number < files; ++number) {
            const QString path = directory_.filePath(QString::number(number) + u".flac");
            QFile file(path);
            if (file.open(QIODevice::WriteOnly))
                file.write(content);
            urls_.append(FileURL::fromPath(QFile::encodeName(path)));
        }
    }

    [[nodiscard]] const QList<FileURL>& urls() const { return urls_; }

  private:
    QTemporaryDir directory_;
    QList<FileURL> urls_;
};

ArtworkLoader::Sources sourcesIn(const QTemporaryDir& directory) {
    return {.readMetadata = [](const FileURL& url) { return MetadataReader().load(url); },
            .fallbackCover = [] { return QImage(); },
            .applicationSupportDirectory = QFile::encodeName(directory.path())};
}

/// Requests all of them at once, as the table does at first, and waits for the last one.
void loadAll(ArtworkLoader& loader, const QList<FileURL>& urls) {
    qsizetype answered = 0;
    for (const FileURL& url : urls)
        loader.load(url, Variant::thumb64, [&answered](const QImage&) { ++answered; });
    while (answered < urls.size())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void thumbnailsFromTheFiles(benchmark::State& state) {
    const Songs songs;
    for (const auto _ : state) {
        state.PauseTiming();
        const QTemporaryDir directory;
        ArtworkLoader loader(sourcesIn(directory));
        state.ResumeTiming();
        loadAll(loader, songs.urls());
    }
}
BENCHMARK(thumbnailsFromTheFiles)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void thumbnailsFromDisk(benchmark::State& state) {
    const Songs songs;
    const QTemporaryDir directory;
    ArtworkLoader first(sourcesIn(directory));
    loadAll(first, songs.urls());
    for (const auto _ : state) {
        ArtworkLoader loader(sourcesIn(directory));
        loadAll(loader, songs.urls());
    }
}
BENCHMARK(thumbnailsFromDisk)->Unit(benchmark::kMillisecond)->UseRealTime();

void thumbnailsFromMemory(benchmark::State& state) {
    const Songs songs;
    const QTemporaryDir directory;
    ArtworkLoader loader(sourcesIn(directory));
    loadAll(loader, songs.urls());
    for (const auto _ : state)
        loadAll(loader, songs.urls());
}
BENCHMARK(thumbnailsFromMemory)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
