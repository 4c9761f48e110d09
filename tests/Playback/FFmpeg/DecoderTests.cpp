#include "Playback/FFmpeg/FFmpegDecoder.h"
#include "Playback/SoundFiles.h"
#include "ProcessorTime.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace tamsy::test {
namespace {

using Frames = std::vector<StereoFrame>;

std::unique_ptr<FFmpegDecoder> open(const QByteArray& path) {
    static const std::atomic<bool> abandoned = false;
    return FFmpegDecoder::open(path.constData(), abandoned);
}

/// At most `count` frames from where the decoder stands.
Frames take(MediaDecoder& decoder, std::size_t count = SIZE_MAX) {
    Frames frames;
    for (bool ended = false; !ended && frames.size() < count;) {
        const MediaDecoder::Block block = decoder.decode();
        frames.insert(frames.end(), block.frames.begin(), block.frames.end());
        ended = block.ended;
    }
    frames.resize(std::min(frames.size(), count));
    return frames;
}

float peak(const Frames& frames) {
    float highest = 0;
    for (const StereoFrame& frame : frames)
        highest = std::max({highest, std::abs(frame.left), std::abs(frame.right)});
    return highest;
}

TEST(Decoder, TellsTheTrueLengthOfEachKindAndSeeksToTheFrame) {
    const SoundFile files[] = {{"first.m4a", "-c:a aac -movflags +faststart"},
                               {"last.m4a", "-c:a aac -ar 48000"},
                               {"alac.m4a", "-c:a alac", 1},
                               {"constant.aac", "-c:a aac -b:a 96k"},
                               {"variable.aac", "-c:a aac -q:a 0.3"},
                               {"pcm.caf", "-c:a pcm_s16le"},
                               {"alac.caf", "-c:a alac"},
                               {"aac.caf"},
                               {"pcm.aiff"},
                               {"deep.aif", "-c:a pcm_s24be -f aiff -ar 96000"},
                               {"wav.m4a", "-f wav"}};
    for (const SoundFile& file : files) {
        SCOPED_TRACE(file.name);
        const auto decoder = open(soundFile(file));
        ASSERT_TRUE(decoder);
        const Frames all = take(*decoder);
        const double length = static_cast<double>(all.size()) / mediaSampleRate;
        EXPECT_NEAR(length, 10, 0.06);
        EXPECT_NEAR(decoder->duration(), length, 0.06);
        EXPECT_NEAR(peak(all), 0.4, 0.02);

        for (const double target : {3.3333, 0.0, 0.01, 9.8, 5.0, 1.2345}) {
            EXPECT_NEAR(decoder->seek(target), target, 1.0 / mediaSampleRate);
            const Frames found = take(*decoder, 3000);
            const auto start = static_cast<std::size_t>(std::llround(target * mediaSampleRate));
            float difference = 0;
            for (std::size_t i = 0; i < found.size(); ++i)
                difference = std::max(difference, std::abs(found[i].left - all[start + i].left));
            EXPECT_EQ(found.size(), 3000U) << target;
            EXPECT_LT(difference, 0.02F) << target; // half a frame of the tone at its steepest
        }
        EXPECT_NEAR(decoder->seek(length + 5), length, 2.0 / mediaSampleRate);
        EXPECT_TRUE(take(*decoder).empty());
    }
}

TEST(Decoder, FindsTheSoundAfterLargeTagsAndUnderAnOddName) {
    const QByteArray sound = bytesOf(soundFile({"constant.aac"}));
    // Headers of ten bytes, the size in seven bits a byte: 16 bytes, then three times 2^20.
    const QByteArray tag = QByteArray::fromHex("49443303000000000010") + QByteArray(0x10, '\0') +
                           QByteArray::fromHex("49443303000001400000") + QByteArray(0x300000, '\0');
    for (const char* name : {"tagged.aac", "http:%20\xC3\x28 ?#.aac", "-i concat:a|b.aac"}) {
        const auto decoder = open(fileWith(name, tag + sound));
        ASSERT_TRUE(decoder) << name;
        EXPECT_NEAR(decoder->duration(), 10, 0.06);
    }
}

TEST(Decoder, PlaysADamagedFileAsFarAsItGoes) {
    QByteArray sound = bytesOf(soundFile({"first.m4a", "-c:a aac -movflags +faststart"}));
    const auto cut = open(fileWith("cut.m4a", sound.first(sound.size() / 2)));
    ASSERT_TRUE(cut);
    EXPECT_NEAR(static_cast<double>(take(*cut).size()) / mediaSampleRate, 5, 1);
    sound.replace(sound.size() / 2, 3000, QByteArray(3000, '\x55'));
    const auto scratched = open(fileWith("scratched.m4a", sound));
    ASSERT_TRUE(scratched);
    EXPECT_NEAR(static_cast<double>(take(*scratched).size()) / mediaSampleRate, 10, 1);

    QByteArray raw = bytesOf(soundFile({"constant.aac"}));
    raw.replace(raw.size() / 2, 3000, QByteArray(3000, '\x55'));
    const auto interrupted = open(fileWith("interrupted.aac", raw));
    ASSERT_TRUE(interrupted);
    while (interrupted->scanMore()) {
    }
    EXPECT_NEAR(interrupted->duration(), 10, 1);
}

TEST(Decoder, RefusesQuicklyWhatIsNoMusic) {
    const QByteArray film = fileWith("film.mp4", {});
    ffmpeg("-f lavfi -i testsrc=d=2 -f lavfi -i sine=d=2 film.mp4");
    ffmpeg("-i film.mp4 -c copy film.mkv");
    const QByteArray list = "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\n10-constant.aac\n";
    const QByteArray random = [] {
        QByteArray bytes(1 << 22, '\0');
        std::ranges::generate(bytes, [state = 1U]() mutable {
            return static_cast<char>((state = state * 1664525U + 1013904223U) >> 24U);
        });
        return bytes;
    }();
    const QByteArray moov = bytesOf(soundFile({"last.m4a", "-c:a aac -ar 48000"}));
    const QByteArray pipe = fileWith("pipe.aac", {}) + ".fifo";
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    const std::vector<QByteArray> paths = {
        // Without end, empty, of another kind, or cut off.
        fileWith("zeros.m4a", {}, 1LL << 32), fileWith("zeros.aac", {}, 1LL << 32),
        fileWith("empty.caf", {}),
        fileWith("text.m4a", QByteArray("all words, no song\n").repeated(100'000)),
        fileWith("list.aac", list),
        fileWith("chain.aac", "ffconcat version 1.0\nfile 10-constant.aac\n"),
        fileWith("random.aiff", random), fileWith("headless.m4a", moov.first(moov.size() / 2)),
        QByteArray(film).replace("film.mp4", "film.mkv"),
        // No files.
        pipe, "/dev/zero", "/", "/nowhere.m4a", ""};
    for (const QByteArray& path : paths) {
        const double start = processorSeconds();
        EXPECT_FALSE(open(path)) << path.constData();
        EXPECT_LT(processorSeconds() - start, 0.05) << path.constData();
    }
}

TEST(Decoder, PlaysTheSoundOfAFilmAtNoCost) {
    const QByteArray sound = fileWith("sound.m4a", {});
    const QByteArray film = fileWith("pictures.m4a", {});
    ffmpeg(
        "-f lavfi -i testsrc=d=20:s=640x480 -f lavfi -i sine=d=20 -c:v mpeg4 -f mp4 pictures.m4a");
    ffmpeg("-i pictures.m4a -vn -c copy sound.m4a");
    const auto openingCost = [](const QByteArray& path) {
        const double start = processorSeconds();
        EXPECT_TRUE(open(path));
        return processorSeconds() - start;
    };
    openingCost(sound); // the first opening initialises the library
    const double plain = openingCost(sound);
    EXPECT_LT(openingCost(film), plain + 0.02);
    const auto decoder = open(film);
    ASSERT_TRUE(decoder);
    EXPECT_NEAR(decoder->duration(), 20, 0.06);
    EXPECT_NEAR(static_cast<double>(take(*decoder).size()) / mediaSampleRate, 20, 0.06);
    EXPECT_NEAR(decoder->seek(12.5), 12.5, 1.0 / mediaSampleRate);
}

} // namespace
} // namespace tamsy::test
