// The time from the click to the sound, and the cost of a minute of playback. Needs the private
// sound server.

#include "MemoryDevice.h"
#include "MonitorListener.h"
#include "Playback/CompositePlaybackEngine.h"
#include "Playback/FFmpeg/MediaBackendModule.h"
#include "Playback/Miniaudio/AudioDecoder.h"
#include "Playback/Output/SoundServerEnvironment.h"
#include "Utils/FileURL.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <ctime>

using namespace tamsy;

namespace {

using OpenDevice = std::unique_ptr<MemoryDevice> (*)();

constexpr int listenedSeconds = 5;
constexpr int secondsAMinute = 60;
constexpr std::size_t framesAMinute = std::size_t{secondsAMinute} * mediaSampleRate;

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

/// Measures from `begin` until the first sound arrives from the server; `end` stops it.
template <typename Begin, typename End>
void untilFirstSound(benchmark::State& state, Begin begin, End end) {
    MonitorListener listener;
    for (auto _ : state) {
        listener.waitForSilence();
        const auto start = MonitorListener::Clock::now();
        begin();
        while (!listener.firstSound() &&
               MonitorListener::Clock::now() - start < std::chrono::seconds(3))
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        end();
        if (!listener.firstSound()) {
            state.SkipWithError("nothing sounds");
            return;
        }
        state.SetIterationTime(
            std::chrono::duration<double>(*listener.firstSound() - start).count());
    }
}

/// The silence at the start of the file in milliseconds: the encoder delay.
double leadingSilence(const FileURL& url) {
    const std::atomic<bool> abandoned = false;
    MediaBackend* backend = loadMediaBackend();
    const auto decoder = backend ? backend->openFile(url.path().constData(), abandoned) : nullptr;
    std::size_t silent = 0;
    for (bool ended = !decoder; !ended;) {
        const MediaDecoder::Block block = decoder->decode();
        const auto isLoud = [](StereoFrame frame) { return MonitorListener::isSound(frame.left); };
        const auto loud = std::ranges::find_if(block.frames, isLoud);
        silent += static_cast<std::size_t>(loud - block.frames.begin());
        ended = block.ended || loud != block.frames.end();
    }
    return static_cast<double>(silent) * 1000 / mediaSampleRate;
}

void clickToFirstSound(benchmark::State& state, const std::string& name) {
    CompositePlaybackEngine engine;
    engine.load(testAudio(name)); // warm
    runEvents(500);
    const auto click = [&] {
        engine.stop();
        engine.load(testAudio(name));
        engine.play();
    };
    untilFirstSound(state, click, [&] { engine.stop(); });
    state.counters["of it the file's own silence, ms"] = leadingSilence(testAudio(name));
}

void deviceToFirstSound(benchmark::State& state, OpenDevice open) {
    std::unique_ptr<MemoryDevice> device = open();
    device.reset(); // warm
    untilFirstSound(
        state, [&] { device = open(); }, [&] { device.reset(); });
}

/// Processor seconds per minute of playback, extrapolated from some seconds.
double minuteFromNow() {
    runEvents(1000);
    const double before = processorTime();
    runEvents(listenedSeconds * 1000);
    return (processorTime() - before) * secondsAMinute / listenedSeconds;
}

void minuteOfPlayback(benchmark::State& state, const std::string& name) {
    for (auto _ : state) {
        CompositePlaybackEngine engine;
        engine.setUpdateInterval(0.25);
        engine.load(testAudio(name));
        engine.play();
        state.SetIterationTime(minuteFromNow());
    }
}

/// Decodes one minute with the miniaudio engine's decoder.
bool decodeWithFirst(const FileURL& url) {
    AudioDecoder decoder;
    if (decoder.open(url) != MA_SUCCESS)
        return false;
    std::array<StereoFrame, 1024> frames{};
    for (std::size_t read = 0; read < framesAMinute; read += frames.size())
        static_cast<void>(decoder.read(frames.data(), frames.size()));
    return true;
}

/// The same with the media player's decoder.
bool decodeWithSecond(const FileURL& url) {
    const std::atomic<bool> abandoned = false;
    MediaBackend* backend = loadMediaBackend();
    const auto decoder = backend ? backend->openFile(url.path().constData(), abandoned) : nullptr;
    if (!decoder)
        return false;
    for (std::size_t read = 0; read < framesAMinute;)
        read += decoder->decode().frames.size();
    return true;
}

/// Baseline: a device fed from memory for a minute, plus decoding that minute.
void deviceAndDecoding(benchmark::State& state, OpenDevice open, bool (*decode)(const FileURL&),
                       const std::string& name) {
    for (auto _ : state) {
        const std::unique_ptr<MemoryDevice> device = open();
        const double playing = minuteFromNow();
        const double before = processorTime();
        if (!device || !decode(testAudio(name))) {
            state.SkipWithError("can't be opened");
            return;
        }
        state.SetIterationTime(playing + processorTime() - before);
    }
}

void listBenchmarks() {
    const auto add = [](const std::string& name, int iterations, auto function) {
        benchmark::RegisterBenchmark(name.c_str(), function)
            ->UseManualTime()
            ->Iterations(iterations)
            ->Repetitions(3) // it runs in real time
            ->Unit(benchmark::kMillisecond);
    };
    constexpr int clicks = 5;
    add("click to sound/baseline/first engine's device alone", clicks,
        [](auto& state) { deviceToFirstSound(state, MemoryDevice::openFirst); });
    add("click to sound/baseline/second engine's device alone", clicks,
        [](auto& state) { deviceToFirstSound(state, MemoryDevice::openSecond); });
    for (const char* extension :
         {"wav", "mp3", "flac", "ogg", "oga", "m4a", "aac", "aiff", "aif", "caf"}) {
        const std::string name = std::string("minutes-4.") + extension;
        add("click to sound/" + name, clicks,
            [name](auto& state) { clickToFirstSound(state, name); });
    }
    for (const std::string name : {"minutes-4.mp3", "minutes-4.flac", "minutes-4.m4a"}) {
        const bool isFirst = !name.ends_with("m4a");
        const OpenDevice open = isFirst ? MemoryDevice::openFirst : MemoryDevice::openSecond;
        const auto decode = isFirst ? decodeWithFirst : decodeWithSecond;
        add("processor time of a minute/baseline/device and decoding, " + name, 1,
            [=](auto& state) { deviceAndDecoding(state, open, decode, name); });
        add("processor time of a minute/" + name, 1,
            [name](auto& state) { minuteOfPlayback(state, name); });
    }
}

} // namespace

int main(int argc, char** argv) {
    describeStreamsToSoundServers();
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    listBenchmarks();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
