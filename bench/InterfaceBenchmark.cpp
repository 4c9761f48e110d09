// What the interface thread does at a keystroke in the search field, over 100,000 tracks.

#include "Platform/UserDefaults.h"
#include "Services/AudioMetadata.h"
#include "Services/FolderLibraryService.h"
#include "Services/FolderPersistence.h"
#include "ViewModels/LibraryViewModel.h"
#include "Views/TrackListModel.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

using namespace tamsy;

namespace {

constexpr int trackCount = 100000;
constexpr int tracksAnAlbum = 11;

class NoFolderPanel : public FolderPanel {
  public:
    void runModal(const QString& /*prompt*/, const QString& /*message*/,
                  Completion /*completion*/) override {}
};

Track makeTrack(int number) {
    static const QStringList words{QStringLiteral("Slow Orbit"),    QStringLiteral("潮汐来信"),
                                   QStringLiteral("Élan vital"),    QStringLiteral("午后四时"),
                                   QStringLiteral("Paper Lantern"), QStringLiteral("花火は遠く")};
    const int album = number / tracksAnAlbum;
    const auto word = [](int index) { return words.at(index % words.size()); };
    static QString artist;
    static QString title;
    if (number % tracksAnAlbum == 0) { // the tracks of an album share these texts
        artist = word(album * 5) + QString::number(album % 900);
        title = word(album * 7) + QString::number(album);
    }
    return {QUuid::createUuid(),
            FileURL::fromPath("/music/" + QByteArray::number(album) + "/" +
                              QByteArray::number(number) + ".flac"),
            word(number) + QLatin1Char(' ') + QString::number(number),
            artist,
            title,
            245.3,
            QStringLiteral("flac")};
}

/// A view model over a stored library of one large folder, made once.
LibraryViewModel& largeLibrary() {
    static QTemporaryDir directory;
    static UserDefaults defaults(directory.path().toUtf8() + "/configuration");
    static LibraryViewModel library = [] {
        FolderPersistence persistence(defaults);
        const auto saved = persistence.saveBookmark(FileURL::fromPath(directory.path().toUtf8()));
        TrackList tracks;
        for (int i = 0; i < trackCount; ++i)
            tracks.append(makeTrack(i));
        persistence.saveTracks(saved->id, tracks);
        return LibraryViewModel(std::make_unique<FolderLibraryService>(
                                    defaults, [](const FileURL&) { return AudioMetadata(); }),
                                std::make_unique<NoFolderPanel>());
    }();
    return library;
}

/// One more letter, until the list's model has changed.
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

/// What comparing alone costs, without lower-casing, normal form and model.
void containsIgnoringCase(benchmark::State& state) {
    const TrackList tracks = largeLibrary().selectedFolder()->tracks;
    const QString query = QStringLiteral("lan");
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
BENCHMARK_CAPTURE(searchKeystroke, many, QStringLiteral("la"), QStringLiteral("lan"))
    ->Unit(benchmark::kMillisecond)
    ->Name("search/keystroke/many");
BENCHMARK_CAPTURE(searchKeystroke, few, QStringLiteral("9999"), QStringLiteral("99999"))
    ->Unit(benchmark::kMillisecond)
    ->Name("search/keystroke/few");
BENCHMARK_CAPTURE(searchKeystroke, chinese, QStringLiteral("潮"), QStringLiteral("潮汐"))
    ->Unit(benchmark::kMillisecond)
    ->Name("search/keystroke/chinese");

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
