// From the click to the sound, and what a minute of sound costs. Wants a sound server; the fallback
// without one will do.

#include "Playback/CompositePlaybackEngine.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <benchmark/benchmark.h>
#include <miniaudio.h>

#include <array>
#include <ctime>

using namespace tamsy;

namespace {

constexpr int listenedSeconds = 5;
constexpr double secondsAMinute = 60;

FileURL testAudio(const std::string& name) {
    return FileURL::fromPath(QByteArray(TEST_AUDIO "/").append(name.c_str()));
}

/// User and system time of the whole process, in seconds.
double processorTime() {
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void runEvents(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

/// From `load` until the engine says that sound is being produced.
void clickToFirstSound(benchmark::State& state, const std::string& name) {
    CompositePlaybackEngine engine;
    bool isPlaying = false;
    const Subscription subscription =
        engine.isPlayingPublisher().subscribe([&](bool playing) { isPlaying = playing; });
    engine.load(testAudio(name)); // warm
    for (auto _ : state) {
        engine.stop();
        isPlaying = false;
        QElapsedTimer clock;
        clock.start();
        engine.load(testAudio(name));
        engine.play();
        while (!isPlaying && clock.elapsed() < 2000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        state.SetIterationTime(static_cast<double>(clock.nsecsElapsed()) * 1e-9);
    }
}

/// Processor seconds for one minute of playback, from some seconds of it.
void minuteOfPlayback(benchmark::State& state, const std::string& name) {
    CompositePlaybackEngine engine;
    engine.setUpdateInterval(0.25);
    engine.load(testAudio(name));
    engine.play();
    runEvents(1000);
    for (auto _ : state) {
        const double before = processorTime();
        runEvents(listenedSeconds * 1000);
        state.SetIterationTime((processorTime() - before) * secondsAMinute / listenedSeconds);
    }
}

/// Processor seconds for decoding one minute with the first engine's decoders.
void minuteOfDecoding(benchmark::State& state, const std::string& name) {
    for (auto _ : state) {
        ma_decoder_config config = ma_decoder_config_init(ma_format_f32, 2, 48000);
        ma_decoder decoder = {};
        const double before = processorTime();
        if (ma_decoder_init_file(testAudio(name).path().constData(), &config, &decoder) !=
            MA_SUCCESS) {
            state.SkipWithError("can't open");
            return;
        }
        std::array<float, 2048> frames{};
        for (std::size_t read = 0; read < 60 * 48000; read += frames.size() / 2)
            ma_decoder_read_pcm_frames(&decoder, frames.data(), frames.size() / 2, nullptr);
        ma_decoder_uninit(&decoder);
        state.SetIterationTime(processorTime() - before);
    }
}

void listBenchmarks() {
    for (const char* extension : {"wav", "mp3", "flac", "ogg", "m4a", "aac", "aiff", "caf"}) {
        const std::string name = std::string("minutes-4.") + extension;
        benchmark::RegisterBenchmark(("click to sound/" + name).c_str(),
                                     [name](auto& state) { clickToFirstSound(state, name); })
            ->UseManualTime()
            ->Iterations(10)
            ->Unit(benchmark::kMillisecond);
    }
    for (const char* name : {"short-0.5.wav", "short-0.5.aiff"})
        benchmark::RegisterBenchmark(
            (std::string("click to sound/baseline/device alone, ") + name).c_str(),
            [name](auto& state) { clickToFirstSound(state, name); })
            ->UseManualTime()
            ->Iterations(10)
            ->Unit(benchmark::kMillisecond);
    for (const char* name :
         {"minutes-4.mp3", "minutes-4.flac", "minutes-4.m4a", "minutes-4.wav", "minutes-4.aiff"})
        benchmark::RegisterBenchmark((std::string("processor time of a minute/") + name).c_str(),
                                     [name](auto& state) { minuteOfPlayback(state, name); })
            ->UseManualTime()
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    for (const char* name : {"minutes-4.mp3", "minutes-4.flac"})
        benchmark::RegisterBenchmark(
            (std::string("processor time of a minute/baseline/decoding, ") + name).c_str(),
            [name](auto& state) { minuteOfDecoding(state, name); })
            ->UseManualTime()
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    listBenchmarks();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
