// The speed of reading tags in a scan, beside a lower bound and TagLib.

#include "Services/Metadata/MetadataReader.h"
#include "Tags/HostileFiles.h"
#include "Tags/MediaAsset.h"

#include <benchmark/benchmark.h>
#include <fileref.h>
#include <tag.h>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>

using namespace tamsy;

namespace {

/// Calls `read` with the path of every file in the library.
void walk(benchmark::State& state, auto&& read) {
    for (auto _ : state) {
        std::int64_t files = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(SCAN_LIBRARY)) {
            if (!entry.is_regular_file())
                continue;
            read(entry.path().native());
            ++files;
        }
        state.counters["files"] = static_cast<double>(files);
        state.counters["files/s"] =
            benchmark::Counter(static_cast<double>(files), benchmark::Counter::kIsRate);
    }
}

void walkWithOneRead(benchmark::State& state) {
    char buffer[8192];
    walk(state, [&](const std::string& path) {
        const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat status = {};
        if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
            return;
        benchmark::DoNotOptimize(::pread(descriptor, buffer, sizeof buffer, 0));
        ::close(descriptor);
    });
}

void scanWithOurReader(benchmark::State& state) {
    double titles = 0;
    walk(state, [&](const std::string& path) {
        const AudioMetadata metadata = MetadataReader().loadWithoutArtwork(FileURL::fromPath(path));
        titles += metadata.title.isEmpty() ? 0 : 1;
    });
    state.counters["titles"] = titles / static_cast<double>(state.iterations());
}

void scanWithTagLib(benchmark::State& state) {
    double titles = 0;
    walk(state, [&](const std::string& path) {
        const TagLib::FileRef file(path.c_str(), true, TagLib::AudioProperties::Fast);
        titles += file.isNull() || !file.tag() || file.tag()->title().isEmpty() ? 0 : 1;
    });
    state.counters["titles"] = titles / static_cast<double>(state.iterations());
}

void readHostileFile(benchmark::State& state, const HostileFile& hostile) {
    MemoryFile file;
    hostile.writeTo(file);
    for (auto _ : state)
        benchmark::DoNotOptimize(MediaAsset(file.url(), MediaAsset::Depth::CommonTexts));
}

} // namespace

int main(int argumentCount, char** arguments) {
    const std::pair<const char*, void (*)(benchmark::State&)> scans[] = {
        {"scan/walk_with_one_8KB_read", walkWithOneRead},
        {"scan/our_reader", scanWithOurReader},
        {"scan/TagLib", scanWithTagLib},
    };
    for (const auto& [name, function] : scans)
        benchmark::RegisterBenchmark(name, function)
            ->Iterations(1)
            ->Repetitions(5)
            ->Unit(benchmark::kMillisecond)
            ->ReportAggregatesOnly();
    static const std::vector<HostileFile> files = hostileFiles();
    for (const HostileFile& file : files)
        benchmark::RegisterBenchmark(
            (std::string("hostile/") + file.name).c_str(),
            [&file](benchmark::State& state) { readHostileFile(state, file); })
            ->Iterations(5)
            ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
