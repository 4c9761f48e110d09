#include "Playback/EngineDecoder.h"
#include "Playback/SeekTally.h"
#include "Tags/MediaAsset.h"
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

struct ForeignFiles {
    const char* names; // parted by blanks
    double seconds = 12;
    Seeks seeks = Seeks::Equal;
};

void expectRight(const QByteArray& name, double seconds, Seeks seeks) {
    SCOPED_TRACE(name.constData());
    const auto decoder = EngineDecoder::open(foreignAudio(name));
    ASSERT_TRUE(decoder);
    const auto whole = decoder->take();
    EXPECT_NEAR(secondsOf(whole), seconds, 0.06);
    if (name.startsWith("chained-")) { // the scan adds up the links
        const MediaAsset scanned(foreignAudio(name), MediaAsset::Depth::CommonTexts);
        EXPECT_NEAR(scanned.duration(), secondsOf(whole), 0.05);
    }
    const SeekTally tally = tallySeeks(*decoder, whole, 30);
    EXPECT_TRUE(tally.isRight()) << tally.elsewhere << " elsewhere, at " << tally.worstTarget
                                 << " s by " << tally.worstOffset << " s; lost " << tally.lost;
    const bool isCut = name.startsWith("cut");
    EXPECT_LE(tally.refused, isCut ? 3 : 0);
    EXPECT_TRUE(seeks == Seeks::InPlace || tally.inPlace == 0) << tally.inPlace;
    EXPECT_LT(decoder->length(), secondsOf(whole) + 0.06);
    EXPECT_GT(decoder->length(), secondsOf(whole) - (isCut ? 1 : 0.06));
}

/// In one process, for most of the time would go into loading the decoding libraries.
TEST(ForeignFiles, PlayWholeAndSeek) {
    constexpr ForeignFiles rows[] = {
        {"variable.mp3 8000.mp3 noise.flac no-length.flac short-total.flac long-total.flac "
         "headless.flac rice-15.flac tag-in-front.flac full-pages.oga flac.oga late-flac.oga "
         "noise.ogg low.ogg empty-book.ogg late-noise.ogg gaps.ogg tag-in-front.ogg "
         "adpcm-ms.wav adpcm-ima.wav alaw.wav float64.wav 8-bit.wav 24-bit.wav "
         "rf64-plain-size.wav tag-in-front.wav alac.m4a alac.caf pcm.caf pcm.aiff"},
        {"no-header.mp3 free-format.mp3 22050.mp3 layer-2.mp3 junk-in-front.mp3 mp3.wav riff.mp3",
         12.05},
        {"few-frames.mp3 few-frames-ape.mp3", 0.13},
        {"cut-total.flac", 5.89},
        {"cut-header.mp3 192000.flac 8-channels.flac", 6},
        {"edited-alac.m4a", 8.7},
        {"cut-noise.ogg", 11.54},
        {"cut-flac.oga", 11.9},
        {"noise.mp3 large-ape.mp3 plain-size.mp3", 12.03},
        {"chained-flac.oga chained-noise.ogg", 17},
        {"joined.mp3", 24.03},
        {"opus.ogg late-opus.ogg speex-8000.oga speex-32000.oga gsm.wav aac.m4a opus.m4a "
         "fragments.m4a ima4.caf ima4.aiff",
         12, Seeks::InPlace},
        {"latm.aac variable.aac", 12.05, Seeks::InPlace},
        {"edited-aac.m4a", 8.7, Seeks::InPlace},
        {"cut-opus.ogg", 11.99, Seeks::InPlace},
        {"chained-opus.ogg", 17, Seeks::InPlace},
    };
    for (const auto& [names, seconds, seeks] : rows)
        for (const QByteArray& name : QByteArray(names).split(' '))
            expectRight(name, seconds, seeks);
}

TEST(EmptyCodebook, WhereTheDecoderNeedsOneHarmsNothing) {
    const auto decoder = EngineDecoder::open(foreignAudio("empty-floor-book.ogg"));
    EXPECT_TRUE(!decoder || secondsOf(decoder->take()) <= 13);
}

} // namespace
