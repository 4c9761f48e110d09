#include "Playback/Miniaudio/AudioDecoder.h"
#include "Playback/TestAudio.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <span>
#include <vector>

using namespace tamsy;
using namespace tamsy::test;

namespace {

/// Interleaved samples of both channels.
using Samples = std::vector<float>;

double secondsOf(const Samples& samples) {
    return static_cast<double>(samples.size()) / AudioDecoder::channels / AudioDecoder::sampleRate;
}

/// A file that tools/make-foreign-audio made.
FileURL foreignAudio(QByteArrayView name) {
    return FileURL::fromPath(TAMSY_FOREIGN_AUDIO).appending(name);
}

/// The next `frames`, or fewer at the end.
Samples read(AudioDecoder& decoder, std::size_t frames) {
    Samples samples(frames * AudioDecoder::channels);
    samples.resize(decoder.read(samples.data(), frames) * AudioDecoder::channels);
    return samples;
}

Samples readAll(AudioDecoder& decoder) {
    constexpr std::size_t block = 4096;
    Samples all;
    for (Samples next = read(decoder, block); !next.empty(); next = read(decoder, block))
        all.insert(all.end(), next.begin(), next.end());
    return all;
}

bool isSilent(const Samples& samples) {
    return std::all_of(samples.begin(), samples.end(), [](float s) { return s == 0; });
}

/// How alike `a` and `b` are: 1 for the same sound at any volume.
double correlation(std::span<const float> a, std::span<const float> b) {
    const auto product = [](std::span<const float> x, std::span<const float> y) {
        return std::inner_product(x.begin(), x.end(), y.begin(), 0.0);
    };
    return product(a, b) / std::sqrt(product(a, a) * product(b, b));
}

/// Whether `sound` stands in `whole` where `seconds` have gone by, give or take a millisecond.
bool standsAt(const Samples& sound, const Samples& whole, double seconds) {
    constexpr std::ptrdiff_t tolerance = AudioDecoder::sampleRate / 1000;
    const auto frame = static_cast<std::ptrdiff_t>(seconds * AudioDecoder::sampleRate);
    for (std::ptrdiff_t at = frame - tolerance; at <= frame + tolerance; ++at) {
        const auto start = static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, at)) * 2;
        if (start + sound.size() <= whole.size() &&
            correlation(sound, std::span(whole).subspan(start, sound.size())) > 0.9)
            return true;
    }
    return false;
}

/// Positions spread over a file of so many seconds, the same in each run.
std::vector<double> positions(double seconds, int count) {
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp)
    std::uniform_real_distribution<double> place(0, seconds);
    std::vector<double> result;
    std::generate_n(std::back_inserter(result), count, [&] { return place(random); });
    return result;
}

TEST(FailedSeek, GoesOnWhereItWasOrEnds) {
    for (const FileURL& url : {foreignAudio("noise.flac"), foreignAudio("noise.ogg"),
                               foreignAudio("noise.mp3"), foreignAudio("noise.wav")}) {
        SCOPED_TRACE(url.absoluteString().toStdString());
        AudioDecoder whole;
        AudioDecoder decoder;
        ASSERT_EQ(whole.open(url), MA_SUCCESS);
        ASSERT_EQ(decoder.open(url), MA_SUCCESS);
        const Samples all = readAll(whole);
        auto targets = positions(20, 60);
        targets.insert(targets.end(), {1e6, 19.9, 1e12, 19.99});
        double before = 0;
        for (const double target : targets) {
            const bool isRefused = decoder.seek(target) != MA_SUCCESS;
            const Samples next = read(decoder, 2000);
            EXPECT_TRUE(!isRefused || isSilent(next) || standsAt(next, all, before)) << target;
            before = (isRefused ? before : target) + secondsOf(next);
        }
    }
}

// Packets go on across its pages. Seeks fail near its end, and the next read went through null.
TEST(FailedSeek, LeavesFlacInOggReadable) {
    AudioDecoder decoder;
    ASSERT_EQ(decoder.open(foreignAudio("full-pages.oga")), MA_SUCCESS);
    for (const double target : positions(20, 40)) {
        (void)decoder.seek(target);
        EXPECT_FALSE(read(decoder, 2000).empty());
    }
}

TEST(EmptyCodebook, WhereTheDecoderNeedsOneHarmsNothing) {
    AudioDecoder decoder;
    const bool isOpen = decoder.open(foreignAudio("empty-floor-book.ogg")) == MA_SUCCESS;
    EXPECT_TRUE(!isOpen || secondsOf(readAll(decoder)) <= 21);
}

struct ForeignFile {
    const char* name;
    bool tellsPositions = true; // in each packet or page, so that seeks can be exact
};

class ForeignFiles : public testing::TestWithParam<ForeignFile> {};

TEST_P(ForeignFiles, PlaysWholeAndSeeks) {
    const auto& [name, tellsPositions] = GetParam();
    constexpr double seconds = 20;
    AudioDecoder whole;
    AudioDecoder decoder;
    ASSERT_EQ(whole.open(foreignAudio(name)), MA_SUCCESS);
    ASSERT_EQ(decoder.open(foreignAudio(name)), MA_SUCCESS);
    const double told = decoder.length();
    const Samples all = readAll(whole);
    EXPECT_NEAR(secondsOf(all), seconds, 0.05);
    EXPECT_TRUE(told == 0 || std::abs(told - seconds) < 0.05) << told;
    for (const double target : positions(seconds - 0.1, 40)) {
        EXPECT_EQ(decoder.seek(target), MA_SUCCESS) << target;
        const Samples sound = read(decoder, 2000);
        EXPECT_TRUE(tellsPositions ? standsAt(sound, all, target) : !sound.empty()) << target;
    }
}

std::string nameOf(const testing::TestParamInfo<ForeignFile>& info) {
    std::string name = info.param.name;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Kinds, ForeignFiles,
                         testing::ValuesIn({
                             ForeignFile{"empty-book.ogg"},
                             ForeignFile{"full-pages.oga"},
                             ForeignFile{"opus.ogg"},
                             ForeignFile{"speex.oga", false},
                             ForeignFile{"adpcm-ms.wav"},
                             ForeignFile{"adpcm-ima.wav"},
                             ForeignFile{"gsm.wav"},
                             ForeignFile{"tag-in-front.flac"},
                             ForeignFile{"tag-in-front.wav"},
                             ForeignFile{"tag-in-front.ogg"},
                             ForeignFile{"no-length.flac"},
                         }),
                         nameOf);

} // namespace
