// The interface thread's work at a keystroke in the search field, with 100,000 tracks.

#include "BigLibrary.h"
#include "Platform/Storage/LargeMemory.h"
#include "Services/Library/FolderLibraryService.h"
#include "Services/Metadata/AudioMetadata.h"
#include "ViewModels/LibraryViewModel.h"
#include "Views/Library/TrackListModel.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

using namespace tamsy;

namespace {

constexpr int trackCount = 100000;

class NoFolderPanel : public FolderPanel {
  public:
    void runModal(const QString& /*prompt*/, const QString& /*message*/,
                  Completion /*completion*/) override {}
};

/// A view model over a stored library with one large folder, created once.
LibraryViewModel& largeLibrary() {
    static const QTemporaryDir directory;
    static UserDefaults defaults(QFile::encodeName(directory.path()));
    static const auto library = [] {
        storeBigLibrary(defaults, QFile::encodeName(directory.path()), trackCount, 1);
        return std::make_unique<LibraryViewModel>(
            std::make_unique<FolderLibraryService>(defaults,
                                                   [](const FileURL&) { return AudioMetadata(); }),
            std::make_unique<NoFolderPanel>());
    }();
    return *library;
}

/// Adds a letter and waits for the list model's change.
void searchKeystroke(benchmark::State& state, const QString& before, const QString& after) {
    LibraryViewModel& library = largeLibrary();
    TrackListModel model;
    model.setLibrary(&library);
    for (auto _ : state) {
        state.PauseTiming();
        library.setSearchText(before);
        state.ResumeTiming();
        library.setSearchText(after);
    }
    state.counters["found"] = model.rowCount();
}

/// Baseline: plain comparison without lower-casing, normalisation and model.
void containsIgnoringCase(benchmark::State& state) {
    const TrackList tracks = largeLibrary().selectedFolder()->tracks;
    const QString query = QStringLiteral("thu");
    for (auto _ : state) {
        qsizetype found = 0;
        for (const Track& track : tracks)
            found += track.title.contains(query, Qt::CaseInsensitive) ||
                     track.artist.contains(query, Qt::CaseInsensitive) ||
                     track.album.contains(query, Qt::CaseInsensitive);
        benchmark::DoNotOptimize(found);
    }
}

BENCHMARK(containsIgnoringCase)->Unit(benchmark::kMillisecond)->Name("search/baseline/contains");
BENCHMARK_CAPTURE(searchKeystroke, many, QStringLiteral("th"), QStringLiteral("thu"))
    ->Unit(benchmark::kMillisecond)
    ->Name("search/keystroke/many");
BENCHMARK_CAPTURE(searchKeystroke, few, QStringLiteral("étude silence é"),
                  QStringLiteral("étude silence ét"))
    ->Unit(benchmark::kMillisecond)
    ->Name("search/keystroke/few");
BENCHMARK_CAPTURE(searchKeystroke, chinese, QStringLiteral("月"), QStringLiteral("月光"))
    ->Unit(benchmark::kMillisecond)
    ->Name("search/keystroke/chinese");

} // namespace

int main(int argc, char** argv) {
    returnLargeBlocksToTheSystem(); // as the program does
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
