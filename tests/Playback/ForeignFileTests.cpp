#include "Playback/EngineDecoder.h"
#include "Playback/SeekTally.h"
#include "Utils/FileURL.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

using namespace tamsy;
using namespace tamsy::test;

namespace {

/// A file that tools/make-foreign-audio made.
FileURL foreignAudio(QByteArrayView name) {
    return FileURL::fromPath(TAMSY_FOREIGN_AUDIO).appending(name);
}

double secondsOf(const std::vector<StereoFrame>& frames) {
    return static_cast<double>(frames.size()) / mediaSampleRate;
}

/// How exact a seek is.
enum class Seeks { Equal, InPlace };

struct ForeignFile {
    const char* name;
    double seconds = 12;
    Seeks seeks = Seeks::Equal;
};

class ForeignFiles : public testing::TestWithParam<ForeignFile> {};

TEST_P(ForeignFiles, PlaysWholeAndSeeks) {
    const auto& [name, seconds, seeks] = GetParam();
    const auto decoder = EngineDecoder::open(foreignAudio(name));
    ASSERT_TRUE(decoder);
    const auto whole = decoder->take();
    EXPECT_NEAR(secondsOf(whole), seconds, 0.06);
    const SeekTally tally = tallySeeks(*decoder, whole, 30);
    EXPECT_TRUE(tally.isRight()) << tally.elsewhere << " elsewhere, at " << tally.worstTarget
                                 << " s by " << tally.worstOffset << " s; lost " << tally.lost;
    EXPECT_LE(tally.refused, QByteArrayView(name).startsWith("cut") ? 3 : 0);
    EXPECT_TRUE(seeks == Seeks::InPlace || tally.inPlace == 0) << tally.inPlace;
    EXPECT_LT(decoder->length(), secondsOf(whole) + 0.06);
    EXPECT_GT(decoder->length(),
              secondsOf(whole) - (QByteArrayView(name).startsWith("cut") ? 1 : 0.06));
}

std::string nameOf(const testing::TestParamInfo<ForeignFile>& info) {
    std::string name = info.param.name;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Kinds, ForeignFiles,
                         testing::ValuesIn({
                             ForeignFile{"noise.mp3", 12.03},
                             ForeignFile{"no-header.mp3", 12.05},
                             ForeignFile{"variable.mp3"},
                             ForeignFile{"free-format.mp3", 12.05},
                             ForeignFile{"22050.mp3", 12.05},
                             ForeignFile{"8000.mp3"},
                             ForeignFile{"layer-2.mp3", 12.05},
                             ForeignFile{"large-ape.mp3", 12.03},
                             ForeignFile{"plain-size.mp3", 12.03},
                             ForeignFile{"junk-in-front.mp3", 12.05},
                             ForeignFile{"joined.mp3", 24.03},
                             ForeignFile{"cut-header.mp3", 6},
                             ForeignFile{"few-frames.mp3", 0.13},
                             ForeignFile{"few-frames-ape.mp3", 0.13},
                             ForeignFile{"mp3.wav", 12.05},
                             ForeignFile{"riff.mp3", 12.05},
                             ForeignFile{"noise.flac"},
                             ForeignFile{"no-length.flac"},
                             ForeignFile{"short-total.flac"},
                             ForeignFile{"long-total.flac"},
                             ForeignFile{"cut-total.flac", 5.89},
                             ForeignFile{"headless.flac"},
                             ForeignFile{"rice-15.flac"},
                             ForeignFile{"192000.flac", 6},
                             ForeignFile{"8-channels.flac", 6},
                             ForeignFile{"tag-in-front.flac"},
                             ForeignFile{"full-pages.oga"},
                             ForeignFile{"flac.oga"},
                             ForeignFile{"late-flac.oga"},
                             ForeignFile{"chained-flac.oga", 17},
                             ForeignFile{"cut-flac.oga", 11.9},
                             ForeignFile{"noise.ogg"},
                             ForeignFile{"low.ogg"},
                             ForeignFile{"empty-book.ogg"},
                             ForeignFile{"late-noise.ogg"},
                             ForeignFile{"chained-noise.ogg", 17},
                             ForeignFile{"cut-noise.ogg", 11.54},
                             ForeignFile{"gaps.ogg"},
                             ForeignFile{"tag-in-front.ogg"},
                             ForeignFile{"opus.ogg", 12, Seeks::InPlace},
                             ForeignFile{"late-opus.ogg", 12, Seeks::InPlace},
                             ForeignFile{"chained-opus.ogg", 17, Seeks::InPlace},
                             ForeignFile{"cut-opus.ogg", 11.99, Seeks::InPlace},
                             ForeignFile{"speex-8000.oga", 12, Seeks::InPlace},
                             ForeignFile{"speex-32000.oga", 12, Seeks::InPlace},
                             ForeignFile{"adpcm-ms.wav"},
                             ForeignFile{"adpcm-ima.wav"},
                             ForeignFile{"gsm.wav", 12, Seeks::InPlace},
                             ForeignFile{"alaw.wav"},
                             ForeignFile{"float64.wav"},
                             ForeignFile{"8-bit.wav"},
                             ForeignFile{"24-bit.wav"},
                             ForeignFile{"rf64-plain-size.wav"},
                             ForeignFile{"tag-in-front.wav"},
                             ForeignFile{"latm.aac", 12.05, Seeks::InPlace},
                             ForeignFile{"variable.aac", 12.05, Seeks::InPlace},
                             ForeignFile{"aac.m4a", 12, Seeks::InPlace},
                             ForeignFile{"alac.m4a"},
                             ForeignFile{"opus.m4a", 12, Seeks::InPlace},
                             ForeignFile{"fragments.m4a", 12, Seeks::InPlace},
                             ForeignFile{"edited-aac.m4a", 8.7, Seeks::InPlace},
                             ForeignFile{"edited-alac.m4a", 8.7},
                             ForeignFile{"ima4.caf", 12, Seeks::InPlace},
                             ForeignFile{"alac.caf"},
                             ForeignFile{"pcm.caf"},
                             ForeignFile{"pcm.aiff"},
                             ForeignFile{"ima4.aiff", 12, Seeks::InPlace},
                         }),
                         nameOf);

TEST(EmptyCodebook, WhereTheDecoderNeedsOneHarmsNothing) {
    const auto decoder = EngineDecoder::open(foreignAudio("empty-floor-book.ogg"));
    EXPECT_TRUE(!decoder || secondsOf(decoder->take()) <= 13);
}

} // namespace
