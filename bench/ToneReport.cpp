// What becomes of tones on their way through the decoders: tone_report folder. Writes test files
// into the folder. Prints, for each engine, format and sample rate, the worst level error and the
// loudest frequency that isn't in the file, over all tones; then what the conversion costs. Lossy
// formats are held against their own decoding at the file's rate, converted ideally. Fails where a
// tone's level is off by more than 0.05 dB, or a false tone is above -120 dB.

#include "Playback/Resampling/Resampler.h"
#include "Playback/Tones.h"

#include <QFile>
#include <miniaudio.h>

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

/// The decoder's output at the file's rate, as a file of floats.
using NativeDecoding = bool (*)(const QByteArray& folder, const char* file);

struct LossyFormat {
    const char* name;
    const char* file;
    const char* options;
    Decoding decode;
    NativeDecoding decodeNatively;
    int highestRate;
};

bool runIn(const QByteArray& folder, const QByteArray& command) {
    return std::system(QByteArray("cd '" + folder + "' && " + command).constData()) == 0;
}

bool decodeNativelyByFirst(const QByteArray& folder, const char* file) {
    ma_decoder decoder;
    const ma_decoder_config config = ma_decoder_config_init(ma_format_f32, 2, 0);
    const QByteArray path = folder + '/' + file;
    if (ma_decoder_init_file(path.constData(), &config, &decoder) != MA_SUCCESS)
        return false;
    std::vector<float> samples(std::size_t{2} * 16 * 1'048'576);
    ma_uint64 frames = 0;
    ma_decoder_read_pcm_frames(&decoder, samples.data(), samples.size() / 2, &frames);
    const auto rate = static_cast<int>(decoder.outputSampleRate);
    ma_decoder_uninit(&decoder);
    QFile wave(QFile::decodeName(folder + "/native.wav"));
    return wave.open(QIODevice::WriteOnly) &&
           wave.write(waveFile(
               [&](std::int64_t i) {
                   return double{samples[2 * static_cast<std::size_t>(i)]}; // both are alike
               },
               static_cast<std::int64_t>(frames), rate)) > 0;
}

bool decodeNativelyBySecond(const QByteArray& folder, const char* file) {
    return runIn(folder, QByteArray("ffmpeg -v error -y -nostdin -i ") + file +
                             " -c:a pcm_f32le native.wav");
}

const LossyFormat lossyFormats[] = {
    {"mp3", "l.mp3", "-c:a libmp3lame -b:a 320k", decodeWithFirstEngine, decodeNativelyByFirst,
     48'000},
    {"ogg", "l.ogg", "-c:a libvorbis -q:a 9", decodeWithFirstEngine, decodeNativelyByFirst,
     192'000},
    {"m4a", "l.m4a", "-c:a aac -b:a 256k", decodeWithSecondEngine, decodeNativelyBySecond, 96'000},
    {"aac", "l.aac", "-c:a aac -b:a 256k", decodeWithSecondEngine, decodeNativelyBySecond, 96'000},
};

std::vector<double> tonesAt(int rate) {
    const double highest = 0.45 * std::min(rate, mediaSampleRate);
    std::vector<double> tones = {20, 1'000, 5'000, 10'000, 15'000, 18'000, 20'000};
    std::erase_if(tones, [&](double hertz) { return hertz >= highest; });
    tones.push_back(highest);
    return tones;
}

/// A file with all tones of `rate`, one after the other.
bool makeWave(const QByteArray& path, int rate, int channels) {
    const std::vector<double> tones = tonesAt(rate);
    const auto frames = static_cast<std::int64_t>(secondsPerTone * rate);
    std::vector<Signal> signals;
    signals.reserve(tones.size());
    for (const double hertz : tones)
        signals.push_back(tone(hertz, rate));
    const auto signal = [&](std::int64_t i) {
        return signals[static_cast<std::size_t>(i / frames)](i % frames);
    };
    QFile wave(QFile::decodeName(path));
    const auto count = static_cast<std::int64_t>(tones.size());
    return wave.open(QIODevice::WriteOnly) &&
           wave.write(waveFile(signal, count * frames, rate, channels)) > 0;
}

bool encode(const QByteArray& folder, const char* options, const char* file) {
    return runIn(folder,
                 QByteArray("ffmpeg -v error -y -nostdin -i source.wav ") + options + ' ' + file);
}

bool makeFile(const QByteArray& folder, const Format& format, int rate) {
    const bool isWave = *format.options == '\0';
    return makeWave(folder + '/' + (isWave ? format.file : "source.wav"), rate, format.channels) &&
           (isWave || encode(folder, format.options, format.file));
}

void widen(Purity& worst, double levelError, double loudestLine) {
    worst.loudestLine = std::max(worst.loudestLine, loudestLine);
    if (std::abs(levelError) > std::abs(worst.levelError))
        worst.levelError = levelError;
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
        widen(worst, found.levelError, found.loudestLine);
    }
    return worst;
}

/// The same for a lossy format, whose own errors don't count.
std::optional<Purity> worstOf(const QByteArray& folder, const LossyFormat& format, int rate) {
    constexpr const char* ideal = "ffmpeg -v error -y -nostdin -i native.wav -af "
                                  "aresample=48000:resampler=soxr:precision=33 -c:a pcm_f32le "
                                  "ideal.wav";
    if (rate > format.highestRate || !makeWave(folder + "/source.wav", rate, 2) ||
        !encode(folder, format.options, format.file) ||
        !format.decodeNatively(folder, format.file) || !runIn(folder, ideal))
        return std::nullopt;
    const FileURL place = FileURL::fromPath(folder);
    const Frames ours = format.decode(place.appending(format.file), 0, SIZE_MAX);
    const Frames reference = decodeWithFirstEngine(place.appending("ideal.wav"), 0, SIZE_MAX);
    const auto perTone = static_cast<std::size_t>(secondsPerTone * mediaSampleRate);
    const std::vector<double> tones = tonesAt(rate);
    if (std::min(ours.size(), reference.size()) < tones.size() * perTone)
        return std::nullopt;
    Purity worst = {0, -999};
    for (std::size_t i = 0; i < tones.size(); ++i) {
        const Signal clean = tone(tones[i], mediaSampleRate);
        const std::size_t inside = i * perTone + perTone / 4;
        Frames difference(ours.begin() + static_cast<std::ptrdiff_t>(inside),
                          ours.begin() + static_cast<std::ptrdiff_t>((i + 1) * perTone));
        const double level = purity(difference, tones[i]).levelError -
                             purity(std::span(reference).subspan(inside), tones[i]).levelError;
        // What differs, beside a clean tone to hold it against.
        for (std::size_t frame = 0; frame < difference.size(); ++frame)
            difference[frame].left += static_cast<float>(clean(static_cast<std::int64_t>(frame))) -
                                      reference[inside + frame].left;
        widen(worst, level, purity(difference, tones[i]).loudestLine);
    }
    return worst;
}

/// Prints a row of the table. False if something in it is off.
template <typename AnyFormat>
bool report(const QByteArray& folder, const AnyFormat& format, double limit, int highestRate) {
    bool isPure = true;
    std::printf("tones: %-17s", format.name);
    for (const int rate : rates) {
        const auto worst = worstOf(folder, format, rate);
        if (worst)
            std::printf(" %6.3f/%4.0f", worst->levelError, worst->loudestLine);
        else
            std::printf("           -");
        const bool isGood =
            worst && std::abs(worst->levelError) <= 0.05 && worst->loudestLine <= limit;
        isPure = isPure && (isGood || rate > highestRate);
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
        isPure = report(argv[1], format, format.limit, rates[std::size(rates) - 1]) && isPure;
    for (const LossyFormat& format : lossyFormats)
        isPure = report(argv[1], format, -120, format.highestRate) && isPure;
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
