// A library of 100,000 tracks: storing a finished scan, loading, memory and the walk, each beside a
// lower bound.

#include "BigLibrary.h"
#include "Models/AudioFolder.h"
#include "Platform/Storage/DirectoryWalk.h"
#include "Platform/Storage/FileDescriptor.h"
#include "Platform/Storage/LargeMemory.h"
#include "Services/Library/FolderPersistence.h"

#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <malloc.h>
#include <map>
#include <sys/wait.h>

using namespace tamsy;

namespace {

constexpr int trackCount = 100'000;
constexpr double megabyte = 1e6;

double residentMegabytes() {
    long size = 0;
    long resident = 0;
    if (FILE* const file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &size, &resident) != 2)
            resident = 0;
        std::fclose(file);
    }
    return static_cast<double>(resident * ::sysconf(_SC_PAGESIZE)) / megabyte;
}

/// Stores a library in `folders` folders. Another process does it, so that this one can't reuse its
/// memory.
class StoredLibrary {
  public:
    explicit StoredLibrary(int folders) : path_(QFile::encodeName(directory_.path())) {
        if (const pid_t child = ::fork(); child > 0) {
            ::waitpid(child, nullptr, 0);
            return;
        }
        UserDefaults defaults(path_);
        storeBigLibrary(defaults, path_ + "/Music", trackCount, folders);
        ::_exit(0);
    }
    [[nodiscard]] const QByteArray& path() const { return path_; }
    [[nodiscard]] StoredFile document() const {
        return StoredFile(path_ + '/' + FolderPersistence::defaultsKey);
    }

  private:
    QTemporaryDir directory_;
    QByteArray path_;
};

/// Made once for all that want as many folders; making takes far longer than what is measured.
const StoredLibrary& storedLibrary(int folders) {
    static std::map<int, StoredLibrary> libraries;
    return libraries.try_emplace(folders, folders).first->second;
}

void load(benchmark::State& state) {
    const StoredLibrary& library = storedLibrary(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        UserDefaults defaults(library.path());
        state.PauseTiming();
        ::malloc_trim(0); // reused memory of an earlier run wouldn't be counted
        const double before = residentMegabytes();
        state.ResumeTiming();
        const auto records = FolderPersistence(defaults).loadRecords();
        state.counters["added MB"] = residentMegabytes() - before;
        benchmark::DoNotOptimize(records.data());
    }
    state.counters["document MB"] =
        static_cast<double>(library.document().read().value_or(QByteArray()).size()) / megabyte;
}

void finishedScan(benchmark::State& state) {
    const StoredLibrary& library = storedLibrary(static_cast<int>(state.range(0)));
    UserDefaults defaults(library.path());
    FolderPersistence persistence(defaults);
    const FolderRecord record = persistence.loadRecords().first();
    for (auto _ : state) {
        persistence.saveTracks(record.id, *record.tracks);
        state.PauseTiming();
        defaults.drain();
        state.ResumeTiming();
    }
}

void readAndWriteTheSameBytes(benchmark::State& state) {
    const StoredLibrary& library = storedLibrary(1);
    const QByteArray copy = library.path() + "/copy";
    for (auto _ : state) {
        const QByteArray bytes = library.document().read().value_or(QByteArray());
        const FileDescriptor file(
            ::open(copy.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
        if (::write(file.number(), bytes.constData(), static_cast<std::size_t>(bytes.size())) !=
            bytes.size())
            state.SkipWithError("the disk is full");
    }
}

/// Files in directories of `state.range(0)` entries.
class MusicTree {
  public:
    MusicTree(int files, int filesPerDirectory) {
        for (int i = 0; i < files; ++i) {
            const QByteArray directory = QFile::encodeName(directory_.path()) + "/Album " +
                                         QByteArray::number(i / filesPerDirectory);
            if (i % filesPerDirectory == 0 && !makeDirectories(directory))
                return;
            const QByteArray name = directory + "/" + QByteArray::number(i * 7919 % 10'007) +
                                    " Song " + QByteArray::number(i) + ".mp3";
            FileDescriptor(::open(name.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
        }
    }
    [[nodiscard]] QByteArray path() const { return QFile::encodeName(directory_.path()); }

  private:
    QTemporaryDir directory_;
};

/// Made once for all subjects.
const MusicTree& musicTree(int files, int filesPerDirectory) {
    static std::map<int, MusicTree> trees;
    return trees.try_emplace(filesPerDirectory, files, filesPerDirectory).first->second;
}

void countFiles(benchmark::State& state, auto&& walk) {
    const auto perDirectory = static_cast<int>(state.range(0));
    const int files = std::max(20'000, perDirectory);
    const MusicTree& tree = musicTree(files, perDirectory);
    for (auto _ : state) {
        if (walk(tree.path()) != files)
            state.SkipWithError("files are missing");
    }
    state.counters["files/s"] = benchmark::Counter(static_cast<double>(files),
                                                   benchmark::Counter::kIsIterationInvariantRate);
}

void walk(benchmark::State& state) {
    countFiles(state, [](const QByteArray& path) {
        int count = 0;
        DirectoryWalk::visitFiles(
            FileURL::fromPath(path), {}, [](QByteArrayView name) { return name.endsWith(".mp3"); },
            [&](const FileURL&) { ++count; });
        return count;
    });
}

void listWithoutOrder(benchmark::State& state) {
    countFiles(state, [](const QByteArray& path) {
        int count = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path.toStdString()))
            count += entry.is_regular_file() ? 1 : 0;
        return count;
    });
}

BENCHMARK(load)->Arg(10)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(finishedScan)->Arg(10)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(readAndWriteTheSameBytes)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(walk)->Arg(10)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(listWithoutOrder)->Arg(10)->Arg(100'000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    returnLargeBlocksToTheSystem(); // as the program does
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
