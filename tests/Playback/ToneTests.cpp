#include "Playback/SoundFiles.h"
#include "Playback/Tones.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace tamsy;
using namespace tamsy::test;

namespace {

constexpr std::size_t second = mediaSampleRate;
constexpr int rates[] = {8'000,  11'025, 16'000, 22'050,  32'000,
                         44'100, 88'200, 96'000, 176'400, 192'000};

/// Both engines decode the same files here; in the player the extension decides.
class Tones : public testing::TestWithParam<Decoding> {
  protected:
    static Frames decode(const FileURL& url, double start = 0, std::size_t count = SIZE_MAX) {
        return GetParam()(url, start, count);
    }

    static FileURL fileOf(const QByteArray& bytes) {
        return FileURL::fromPath(fileWith("tone.wav", bytes));
    }
};

float difference(std::span<const StereoFrame> one, std::span<const StereoFrame> other) {
    float largest = 0;
    for (std::size_t i = 0; i < std::min(one.size(), other.size()); ++i)
        largest = std::max({largest, std::abs(one[i].left - other[i].left),
                            std::abs(one[i].right - other[i].right)});
    return largest;
}

TEST_P(Tones, StayPureAtEveryRateAndOnAllChannels) {
    for (const int rate : rates) {
        const int channels = rate % 11'025 == 0 ? 6 : rate < 20'000 ? 1 : 2;
        const double highest = 0.45 * std::min(rate, mediaSampleRate);
        for (const double hertz : {20.0, 997.0, highest}) {
            const auto wave = waveFile(tone(hertz, rate), rate, rate, channels);
            const Frames frames = decode(fileOf(wave));
            ASSERT_EQ(frames.size(), second) << rate;
            const Purity found = purity(std::span(frames).subspan(second / 4), hertz);
            EXPECT_NEAR(found.levelError, 0, 0.05) << hertz << " Hz at " << rate;
            EXPECT_LT(found.loudestLine, -120) << hertz << " Hz at " << rate;
        }
    }
}

TEST_P(Tones, AClickStaysInItsPlaceAndASeekChangesNoSample) {
    for (const int rate : rates) {
        const std::int64_t clickFrame = 17LL * rate / 10;
        const Signal background = tone(0.3 * rate / 2, rate);
        const auto signal = [&](std::int64_t i) {
            return i == clickFrame ? 1 : background(i) / 50;
        };
        const FileURL url = fileOf(waveFile(signal, 2 * rate + 7, rate));
        const Frames all = decode(url);
        EXPECT_EQ(all.size(),
                  static_cast<std::size_t>(std::llround((2.0 * rate + 7) * second / rate)));
        const auto isQuieter = [](StereoFrame one, StereoFrame other) {
            return std::abs(one.left) < std::abs(other.left);
        };
        const auto click = std::ranges::max_element(all, isQuieter) - all.begin();
        EXPECT_NEAR(static_cast<double>(click), static_cast<double>(clickFrame) * second / rate, 1)
            << rate;
        // Near the start, so that less than the filter's reach lies ahead, to the frame before the
        // click, and on to the end.
        for (const double target : {0.0001, 0.01, 0.77777, 1.69998, 1.9999}) {
            const auto start = static_cast<std::size_t>(std::llround(target * second));
            const double exact = (static_cast<double>(start) + 0.25) / second;
            const Frames found = decode(url, exact);
            EXPECT_EQ(found.size(), all.size() - start) << target << " at " << rate;
            EXPECT_LT(difference(found, std::span(all).subspan(start)), 1e-6)
                << target << " at " << rate;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Engines, Tones,
                         testing::Values<Decoding>(decodeWithFirstEngine, decodeWithSecondEngine),
                         [](const auto& row) { return row.index == 0 ? "First" : "Second"; });

} // namespace
