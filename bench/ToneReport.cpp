// What becomes of tones on their way through the decoders: tone_report folder. Writes test files
// into the folder. Prints, for each engine, format and sample rate, the worst level error and the
// loudest frequency that isn't in the file, over all tones; then what the conversion costs. Fails
// where a tone's level is off by more than 0.05 dB, or a false tone is above -120 dB.

#include "Playback/Resampling/Resampler.h"
#include "Playback/Tones.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>

using namespace tamsy;
using namespace tamsy::test;

namespace {

constexpr int rates[] = {8'000,  11'025, 16'000, 22'050,  32'000,
                         44'100, 88'200, 96'000, 176'400, 192'000};
constexpr double secondsPerTone = 0.6;
/// In dB: how loud the dither of 16 bits is in a line of the spectrum, at the lowest rate.
constexpr double noiseOf16Bits = -104;

struct Format {
    const char* name;
    const char* file;
    const char* options; // of ffmpeg; none keeps the file of floats
    Decoding decode;
    int channels = 2;
    double limit = -120; // dB, of a false tone
};

const Format formats[] = {
    {"wav, float", "f.wav", "", decodeWithFirstEngine},
    {"wav, float, mono", "m.wav", "", decodeWithFirstEngine, 1},
    {"wav, float, 5.1", "s.wav", "", decodeWithFirstEngine, 6},
    {"wav, 24 bit", "24.wav", "-c:a pcm_s24le", decodeWithFirstEngine},
    {"wav, 16 bit", "16.wav", "-af aresample=osf=s16:dither_method=triangular -c:a pcm_s16le",
     decodeWithFirstEngine, 2, noiseOf16Bits},
    {"flac, 24 bit", "24.flac", "-c:a flac -sample_fmt s32", decodeWithFirstEngine},
    {"caf, float", "f.caf", "-c:a pcm_f32be", decodeWithSecondEngine},
    {"caf, float, mono", "m.caf", "-c:a pcm_f32be", decodeWithSecondEngine, 1},
    {"caf, float, 5.1", "s.caf", "-c:a pcm_f32be", decodeWithSecondEngine, 6},
    {"aiff, 24 bit", "24.aiff", "-c:a pcm_s24be", decodeWithSecondEngine},
    {"aiff, 16 bit", "16.aiff", "-af aresample=osf=s16:dither_method=triangular -c:a pcm_s16be",
     decodeWithSecondEngine, 2, noiseOf16Bits},
    {"alac, 24 bit", "24.m4a", "-c:a alac -sample_fmt s32p", decodeWithSecondEngine},
};

std::vector<double> tonesAt(int rate) {
    const double highest = 0.45 * std::min(rate, mediaSampleRate);
    std::vector<double> tones = {20, 1'000, 5'000, 10'000, 15'000, 18'000, 20'000};
    std::erase_if(tones, [&](double hertz) { return hertz >= highest; });
    tones.push_back(highest);
    return tones;
}

/// A file with all tones of its rate, one after the other.
bool makeFile(const QByteArray& folder, const Format& format, int rate) {
    const std::vector<double> tones = tonesAt(rate);
    const auto frames = static_cast<std::int64_t>(secondsPerTone * rate);
    std::vector<Signal> signals;
    signals.reserve(tones.size());
    for (const double hertz : tones)
        signals.push_back(tone(hertz, rate));
    const auto signal = [&](std::int64_t i) {
        return signals[static_cast<std::size_t>(i / frames)](i % frames);
    };
    const bool isWave = *format.options == '\0';
    QFile wave(QFile::decodeName(folder + '/' + (isWave ? format.file : "source.wav")));
    if (!wave.open(QIODevice::WriteOnly))
        return false;
    const auto count = static_cast<std::int64_t>(tones.size());
    wave.write(waveFile(signal, count * frames, rate, format.channels));
    wave.close();
    const QByteArray command = "cd '" + folder + "' && ffmpeg -v error -y -nostdin -i source.wav " +
                               format.options + ' ' + format.file;
    return isWave || std::system(command.constData()) == 0;
}

/// The worst of all tones of a rate; nothing if the file can't be decoded to its end.
std::optional<Purity> worstOf(const QByteArray& folder, const Format& format, int rate) {
    Frames frames;
    if (makeFile(folder, format, rate))
        frames = format.decode(FileURL::fromPath(folder).appending(format.file), 0, SIZE_MAX);
    const auto perTone = static_cast<std::size_t>(secondsPerTone * mediaSampleRate);
    const std::vector<double> tones = tonesAt(rate);
    if (frames.size() < tones.size() * perTone)
        return std::nullopt;
    Purity worst = {0, -999};
    for (std::size_t i = 0; i < tones.size(); ++i) {
        const std::size_t inside = i * perTone + perTone / 4; // past the change of tones
        const Purity found = purity(std::span(frames).subspan(inside), tones[i]);
        worst.loudestLine = std::max(worst.loudestLine, found.loudestLine);
        if (std::abs(found.levelError) > std::abs(worst.levelError))
            worst.levelError = found.levelError;
    }
    return worst;
}

/// Prints a row of the table. False if something in it is off.
bool report(const QByteArray& folder, const Format& format) {
    bool isPure = true;
    std::printf("tones: %-17s", format.name);
    for (const int rate : rates) {
        const auto worst = worstOf(folder, format, rate);
        if (worst)
            std::printf(" %6.3f/%4.0f", worst->levelError, worst->loudestLine);
        else
            std::printf("           -");
        isPure = isPure && worst && std::abs(worst->levelError) <= 0.05 &&
                 worst->loudestLine <= format.limit;
    }
    std::printf("%s\n", isPure ? "" : " (beyond the limits)");
    return isPure;
}

double processorTime() {
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Milliseconds of processor time for a second of stereo at 44.1 kHz.
double costOfConversion() {
    constexpr int seconds = 60;
    Resampler resampler(44'100);
    const std::vector<StereoFrame> input(1'050, {0.1F, -0.1F}); // 42 a second
    const double before = processorTime();
    for (int block = 0; block < 42 * seconds; ++block)
        static_cast<void>(resampler.process(input));
    return (processorTime() - before) * 1000 / seconds;
}

double costOfDecoding(Decoding decode, const char* file) {
    constexpr std::size_t seconds = 60;
    const FileURL url = FileURL::fromPath(TEST_AUDIO).appending(file);
    const double before = processorTime();
    const Frames frames = decode(url, 0, seconds * mediaSampleRate);
    return (processorTime() - before) * 1000 / seconds;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s folder\n", argv[0]);
        return 2;
    }
    std::printf("tones: %-17s", "Hz");
    for (const int rate : rates)
        std::printf(" %11d", rate);
    std::printf("\n");
    bool isPure = true;
    for (const Format& format : formats)
        isPure = report(argv[1], format) && isPure;
    const double conversion = costOfConversion();
    const std::pair<const char*, Decoding> files[] = {{"minutes-4.mp3", decodeWithFirstEngine},
                                                      {"minutes-4.flac", decodeWithFirstEngine},
                                                      {"minutes-4.m4a", decodeWithSecondEngine}};
    for (const auto& [file, decode] : files) {
        const double all = costOfDecoding(decode, file);
        std::printf("tones: conversion takes %.2f ms a second of sound, %.0f %% of decoding %s\n",
                    conversion, 100 * conversion / all, file);
    }
    return isPure ? 0 : 1;
}
