#pragma once

#include "Playback/Resampling/StereoFrame.h"
#include "Utils/FileURL.h"

#include <QByteArray>

#include <functional>
#include <span>
#include <vector>

namespace tamsy::test {

using Frames = std::vector<StereoFrame>;

/// A sample of all channels, -1 to 1, by its number in the file.
using Signal = std::function<double(std::int64_t)>;

/// Half of full scale, so that a filter's overshoot has room.
inline constexpr double toneAmplitude = 0.5;
[[nodiscard]] Signal tone(double hertz, int sampleRate);

/// A WAVE file of 32-bit floats, the same signal on 1, 2 or 6 channels (5.1).
[[nodiscard]] QByteArray waveFile(const Signal& signal, std::int64_t frames, int sampleRate,
                                  int channels = 2);

/// One engine's decoding of `url` from `start` seconds on, sought if that isn't 0; at most
/// `count` frames. Empty if it can't be opened.
using Decoding = Frames (*)(const FileURL& url, double start, std::size_t count);
[[nodiscard]] Frames decodeWithFirstEngine(const FileURL& url, double start = 0,
                                           std::size_t count = SIZE_MAX);
[[nodiscard]] Frames decodeWithSecondEngine(const FileURL& url, double start = 0,
                                            std::size_t count = SIZE_MAX);

/// What became of a tone, in dB.
struct Purity {
    double levelError = 0;  // against `toneAmplitude`
    double loudestLine = 0; // the loudest frequency that isn't the tone, against the tone
};

/// Measures the tone in the left channel of `frames`, at least 16,384 of them, at
/// `mediaSampleRate`.
[[nodiscard]] Purity purity(std::span<const StereoFrame> frames, double hertz);

} // namespace tamsy::test
