// Opening and seeking, during which the interface waits. Needs the private sound server.

#include "Playback/Miniaudio/AudioDecoder.h"
#include "Playback/Miniaudio/MiniaudioBridge.h"
#include "Utils/FileURL.h"

#include <QRandomGenerator>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <vector>

using namespace tamsy;

namespace {

FileURL testAudio(const std::string& name) {
    return FileURL::fromPath(QByteArray(TEST_AUDIO "/").append(name.c_str()));
}

/// Baseline: reading the whole file.
void readWhole(benchmark::State& state, const std::string& name) {
    std::vector<char> block(1 << 16);
    for (auto _ : state) {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
            std::fopen(testAudio(name).path().constData(), "rb"), &std::fclose);
        while (file && std::fread(block.data(), 1, block.size(), file.get()) > 0)
            benchmark::DoNotOptimize(block.data());
    }
}

void openDecoder(benchmark::State& state, const std::string& name) {
    for (auto _ : state) {
        AudioDecoder decoder;
        if (decoder.open(testAudio(name)) != MA_SUCCESS)
            state.SkipWithError("can't be opened");
        benchmark::DoNotOptimize(decoder.length());
    }
}

/// A drag through a playing file: each seek stops the device and starts it again.
void drag(benchmark::State& state, const std::string& name) {
    using Clock = std::chrono::steady_clock;
    const std::unique_ptr<BridgePlayer, void (*)(BridgePlayer*)> player(
        ma_createPlayer(testAudio(name), nullptr), &ma_destroyPlayer);
    if (!player || !ma_play(player.get(), nullptr)) {
        state.SkipWithError("can't be played");
        return;
    }
    const double duration = ma_getState(player.get()).durationSeconds;
    QRandomGenerator random(1);
    std::vector<double> taken;
    for (auto _ : state) {
        const double target = random.bounded(duration);
        const auto start = Clock::now();
        ma_seek(player.get(), target, nullptr);
        taken.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::ranges::sort(taken);
    state.counters["95th percentile, ms"] = taken[taken.size() * 95 / 100];
    state.counters["worst, ms"] = taken.back();
}

void listBenchmarks() {
    const auto add = [](const std::string& name, auto function) {
        return benchmark::RegisterBenchmark(name.c_str(), function)
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
    };
    for (const std::string name : {"minutes-4.wav", "minutes-4.mp3", "minutes-4.flac",
                                   "minutes-4.ogg", "hour-header.mp3", "hour-no-header.mp3"}) {
        add("open/baseline/read all of " + name, [name](auto& state) { readWhole(state, name); });
        add("open/" + name, [name](auto& state) { openDecoder(state, name); });
    }
    for (const std::string name : {"minutes-4.wav", "hour-header.mp3", "hour-no-header.mp3"})
        add("seek while playing/" + name, [name](auto& state) {
            drag(state, name);
        })->Iterations(200);
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    listBenchmarks();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
