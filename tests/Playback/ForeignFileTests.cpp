#include "Playback/EngineDecoder.h"
#include "Playback/SeekTally.h"
#include "Utils/FileURL.h"

#include <gtest/gtest.h>

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

/// In one process, for most of the time would go into loading the decoding libraries.
TEST(ForeignFiles, PlayWholeAndSeek) {
    constexpr ForeignFile files[] = {
        {"noise.mp3", 12.03},
        {"no-header.mp3", 12.05},
        {"variable.mp3"},
        {"free-format.mp3", 12.05},
        {"22050.mp3", 12.05},
        {"8000.mp3"},
        {"layer-2.mp3", 12.05},
        {"large-ape.mp3", 12.03},
        {"plain-size.mp3", 12.03},
        {"junk-in-front.mp3", 12.05},
        {"joined.mp3", 24.03},
        {"cut-header.mp3", 6},
        {"few-frames.mp3", 0.13},
        {"few-frames-ape.mp3", 0.13},
        {"mp3.wav", 12.05},
        {"riff.mp3", 12.05},
        {"noise.flac"},
        {"no-length.flac"},
        {"short-total.flac"},
        {"long-total.flac"},
        {"cut-total.flac", 5.89},
        {"headless.flac"},
        {"rice-15.flac"},
        {"192000.flac", 6},
        {"8-channels.flac", 6},
        {"tag-in-front.flac"},
        {"full-pages.oga"},
        {"flac.oga"},
        {"late-flac.oga"},
        {"chained-flac.oga", 17},
        {"cut-flac.oga", 11.9},
        {"noise.ogg"},
        {"low.ogg"},
        {"empty-book.ogg"},
        {"late-noise.ogg"},
        {"chained-noise.ogg", 17},
        {"cut-noise.ogg", 11.54},
        {"gaps.ogg"},
        {"tag-in-front.ogg"},
        {"opus.ogg", 12, Seeks::InPlace},
        {"late-opus.ogg", 12, Seeks::InPlace},
        {"chained-opus.ogg", 17, Seeks::InPlace},
        {"cut-opus.ogg", 11.99, Seeks::InPlace},
        {"speex-8000.oga", 12, Seeks::InPlace},
        {"speex-32000.oga", 12, Seeks::InPlace},
        {"adpcm-ms.wav"},
        {"adpcm-ima.wav"},
        {"gsm.wav", 12, Seeks::InPlace},
        {"alaw.wav"},
        {"float64.wav"},
        {"8-bit.wav"},
        {"24-bit.wav"},
        {"rf64-plain-size.wav"},
        {"tag-in-front.wav"},
        {"latm.aac", 12.05, Seeks::InPlace},
        {"variable.aac", 12.05, Seeks::InPlace},
        {"aac.m4a", 12, Seeks::InPlace},
        {"alac.m4a"},
        {"opus.m4a", 12, Seeks::InPlace},
        {"fragments.m4a", 12, Seeks::InPlace},
        {"edited-aac.m4a", 8.7, Seeks::InPlace},
        {"edited-alac.m4a", 8.7},
        {"ima4.caf", 12, Seeks::InPlace},
        {"alac.caf"},
        {"pcm.caf"},
        {"pcm.aiff"},
        {"ima4.aiff", 12, Seeks::InPlace},
    };
    for (const auto& [name, seconds, seeks] : files) {
        SCOPED_TRACE(name);
        const auto decoder = EngineDecoder::open(foreignAudio(name));
        ASSERT_TRUE(decoder);
        const auto whole = decoder->take();
        EXPECT_NEAR(secondsOf(whole), seconds, 0.06);
        const SeekTally tally = tallySeeks(*decoder, whole, 30);
        EXPECT_TRUE(tally.isRight()) << tally.elsewhere << " elsewhere, at " << tally.worstTarget
                                     << " s by " << tally.worstOffset << " s; lost " << tally.lost;
        const bool isCut = QByteArrayView(name).startsWith("cut");
        EXPECT_LE(tally.refused, isCut ? 3 : 0);
        EXPECT_TRUE(seeks == Seeks::InPlace || tally.inPlace == 0) << tally.inPlace;
        EXPECT_LT(decoder->length(), secondsOf(whole) + 0.06);
        EXPECT_GT(decoder->length(), secondsOf(whole) - (isCut ? 1 : 0.06));
    }
}

TEST(EmptyCodebook, WhereTheDecoderNeedsOneHarmsNothing) {
    const auto decoder = EngineDecoder::open(foreignAudio("empty-floor-book.ogg"));
    EXPECT_TRUE(!decoder || secondsOf(decoder->take()) <= 13);
}

} // namespace
