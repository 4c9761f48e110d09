#include "Playback/Tones.h"

#include "Playback/EngineDecoder.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace tamsy::test {
namespace {

constexpr std::size_t transformSize = 16'384;
constexpr double pi = std::numbers::pi;
using Spectrum = std::vector<std::complex<double>>;

template <typename Value>
void append(QByteArray& bytes, Value value) {
    const auto little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

double decibels(double ratio) {
    return 20 * std::log10(std::max(ratio, 1e-12));
}

/// The tone's sine and cosine parts, by least squares.
std::complex<double> fit(std::span<const StereoFrame> frames, double step) {
    double ss = 0, cc = 0, sc = 0, sx = 0, cx = 0;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const double s = std::sin(step * static_cast<double>(i));
        const double c = std::cos(step * static_cast<double>(i));
        ss += s * s;
        cc += c * c;
        sc += s * c;
        sx += s * frames[i].left;
        cx += c * frames[i].left;
    }
    const double determinant = ss * cc - sc * sc;
    return {(sx * cc - cx * sc) / determinant, (cx * ss - sx * sc) / determinant};
}

/// A fast Fourier transform of a power of two of values, recursive.
void transform(Spectrum& values) {
    const std::size_t half = values.size() / 2;
    if (half == 0)
        return;
    Spectrum even(half);
    Spectrum odd(half);
    for (std::size_t i = 0; i < half; ++i) {
        even[i] = values[2 * i];
        odd[i] = values[2 * i + 1];
    }
    transform(even);
    transform(odd);
    for (std::size_t i = 0; i < half; ++i) {
        const double turn = -pi * static_cast<double>(i) / static_cast<double>(half);
        const std::complex<double> turned = std::polar(1.0, turn) * odd[i];
        values[i] = even[i] + turned;
        values[i + half] = even[i] - turned;
    }
}

Frames decode(const std::unique_ptr<EngineDecoder>& decoder, double start, std::size_t count) {
    const bool isReady = decoder && (start == 0 || decoder->seek(start));
    return isReady ? decoder->take(count) : Frames();
}

} // namespace

Signal tone(double hertz, int sampleRate) {
    const double step = 2 * pi * hertz / sampleRate;
    return
        [step](std::int64_t i) { return toneAmplitude * std::sin(step * static_cast<double>(i)); };
}

QByteArray waveFile(const Signal& signal, std::int64_t frames, int sampleRate, int channels) {
    constexpr int width = sizeof(float);
    const auto dataSize = static_cast<quint32>(frames * channels * width);
    QByteArray bytes = "RIFF";
    append<quint32>(bytes, dataSize + 60);
    bytes += "WAVEfmt ";
    append<quint32>(bytes, 40);
    append<quint16>(bytes, 0xFFFE); // WAVEFORMATEXTENSIBLE
    append<quint16>(bytes, static_cast<quint16>(channels));
    append<quint32>(bytes, static_cast<quint32>(sampleRate));
    append<quint32>(bytes, static_cast<quint32>(sampleRate * channels * width));
    append<quint16>(bytes, static_cast<quint16>(channels * width));
    append<quint16>(bytes, 8 * width);
    append<quint16>(bytes, 22);
    append<quint16>(bytes, 8 * width);
    append<quint32>(bytes, channels == 1 ? 0x4 : channels == 2 ? 0x3 : 0x3F); // speakers
    bytes += QByteArray::fromHex("0300000000001000800000aa00389b71");         // of floats
    bytes += "data";
    append<quint32>(bytes, dataSize);
    for (std::int64_t i = 0; i < frames; ++i) {
        const auto sample = static_cast<float>(signal(i));
        for (int channel = 0; channel < channels; ++channel)
            append<float>(bytes, sample);
    }
    return bytes;
}

Frames decodeWithFirstEngine(const FileURL& url, double start, std::size_t count) {
    return decode(EngineDecoder::openWithFirst(url), start, count);
}

Frames decodeWithSecondEngine(const FileURL& url, double start, std::size_t count) {
    return decode(EngineDecoder::openWithSecond(url), start, count);
}

Purity purity(std::span<const StereoFrame> frames, double hertz) {
    frames = frames.first(transformSize);
    const double step = 2 * pi * hertz / mediaSampleRate;
    const std::complex<double> parts = fit(frames, step);
    Spectrum rest(transformSize);
    double windowSum = 0;
    for (std::size_t i = 0; i < transformSize; ++i) {
        const double turn = 2 * pi * static_cast<double>(i) / transformSize;
        const double window = 0.35875 - 0.48829 * std::cos(turn) + 0.14128 * std::cos(2 * turn) -
                              0.01168 * std::cos(3 * turn); // Blackman and Harris
        const double angle = step * static_cast<double>(i);
        const double expected = parts.real() * std::sin(angle) + parts.imag() * std::cos(angle);
        rest[i] = window * (frames[i].left - expected);
        windowSum += window;
    }
    transform(rest);
    double loudest = 0;
    for (const auto& value : std::span(rest).first(transformSize / 2))
        loudest = std::max(loudest, 2 * std::abs(value) / windowSum);
    const double amplitude = std::abs(parts);
    return {decibels(amplitude / toneAmplitude), decibels(loudest / amplitude)};
}

} // namespace tamsy::test
