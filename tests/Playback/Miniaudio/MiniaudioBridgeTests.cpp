#include "Formats/MpegFrameHeader.h"
#include "Playback/Miniaudio/DecodeAhead.h"
#include "Playback/Miniaudio/MiniaudioBridge.h"
#include "Playback/Miniaudio/MpegAudioScan.h"
#include "Playback/SoundFiles.h"
#include "Playback/TestAudio.h"

#include <QElapsedTimer>
#include <QFile>
#include <QtEndian>
#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace tamsy;
using namespace tamsy::test;

namespace {

constexpr int doesNotExist = -7, isDirectory = -15, invalidFile = -10, noBackend = -203;

struct PlayerEnd {
    void operator()(BridgePlayer* player) const { ma_destroyPlayer(player); }
};
using Player = std::unique_ptr<BridgePlayer, PlayerEnd>;

constexpr qint64 huge = qint64(4) << 30;

/// The first bytes of a test file, or all.
QByteArray startOf(QByteArrayView name, qsizetype count = 1 << 30) {
    return bytesOf(testAudio(name).path()).left(count);
}

/// steps.ogg whose comments begin with `fields`, four bytes each: the length of the vendor's name,
/// the number of comments, the first one's length. They hold 48 bytes more.
QByteArray oggWithComments(std::array<quint32, 3> fields) {
    QByteArray bytes = startOf("steps.ogg");
    qsizetype at = bytes.indexOf("\3vorbis") + 7;
    bytes.replace(at, 60, QByteArray(60, '\0'));
    for (const quint32 field : fields) {
        qToLittleEndian(field, bytes.data() + at);
        at += 4;
    }
    return bytes;
}

/// A file `name` that begins with `bytes`, made as long as `size` by a hole.
FileURL make(const QByteArray& name, const QByteArray& bytes, qint64 size = 0) {
    return FileURL::fromPath(fileWith(name, bytes, size));
}

void expectRefused(const FileURL& url, int code) {
    std::optional<BridgeError> error;
    QElapsedTimer timer;
    timer.start();
    // On a busy machine the answer may come after the call.
    const Player late(ma_createPlayer(url, &error));
    EXPECT_TRUE(waitUntil([&] {
        return error || ma_getFileStateRaw(late.get(), &error) == BridgeFile::NotOpened;
    })) << url.absoluteString().toStdString();
    // The aim is 50 ms; a search through 4 GB takes half a minute.
    EXPECT_LT(timer.elapsed(), 5000) << url.absoluteString().toStdString();
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, code) << url.absoluteString().toStdString();
}

TEST(HostileFile, IsRefusedAtOnce) {
    const QByteArray flacStart = startOf("steps.flac", 42);
    expectRefused(make("zeros.mp3", {}, huge), noBackend);
    expectRefused(make("chunks.wav", "RIFF\xFF\xFF\xFF\x7FWAVE", huge), noBackend);
    expectRefused(make("chunks.aiff.wav", "FORM\177\377\377\377AIFF", huge), noBackend);
    expectRefused(make("blocks.flac", flacStart, huge), noBackend);
    expectRefused(make("pages.ogg", startOf("steps.ogg", 27), huge), noBackend);
    expectRefused(make("one-minute-in.mp3", startOf("steps.mp3", 320'000), huge), noBackend);
    expectRefused(make("film.mp3", startOf("steps.m4a", 1 << 20)), noBackend);
    expectRefused(make("text.mp3", QByteArray(5000, 'x')), noBackend);
    expectRefused(make("tag-past-end.mp3", QByteArray("ID3\3\0\0\x7F\x7F\x7F\x7F", 10)), noBackend);
    expectRefused(make("empty.mp3", {}), noBackend);
}

// The Vorbis decoder would write where it must not, or free what it never set.
TEST(HostileFile, WithLyingVorbisCommentsIsRefusedAtOnce) {
    expectRefused(make("vendor.ogg", oggWithComments({0x7FFFFFF0})), noBackend);
    expectRefused(make("cut.ogg", oggWithComments({0, 3, 1000}).left(150)), noBackend);
    for (const quint32 count : {1000U, 0x10000000U, 0x20000001U, 0x7FFFFFFFU})
        expectRefused(make("count.ogg", oggWithComments({0, count})), noBackend);
}

TEST(HostileFile, IsNotEvenAFile) {
    const QByteArray pipe = fileWith("pipe", {}) + ".mp3";
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    expectRefused(FileURL::fromPath(pipe), invalidFile);
    expectRefused(FileURL::fromPath("/tmp"), isDirectory);
    expectRefused(testAudio("nothing.wav"), doesNotExist);
}

/// steps.ogg with a comment as long as a large cover.
FileURL oggWithCover() {
    const QByteArray tags =
        fileWith("cover.txt", ";FFMETADATA1\nCOVER=" + QByteArray(4'000'000, 'x') + '\n');
    const QByteArray path = tags + ".ogg";
    ffmpeg("-i " + testAudio("steps.ogg").path() + " -i " + tags +
           " -map 0:a -map_metadata:s 1 -c copy " + path);
    EXPECT_GT(bytesOf(path).size(), 4'000'000);
    return FileURL::fromPath(path);
}

TEST(HostileFile, PlaysUnderAWrongNameOrWithSomeDamage) {
    const std::pair<FileURL, double> rows[] = {
        {make("flac.mp3", startOf("steps.flac")), 20},
        {make("mpeg.ogg", startOf("steps.mp3")), 20},
        {make("\xB8\xE8\xFF.ogg", startOf("steps.ogg")), 20},
        {oggWithCover(), 20},
        {make("cut.mp3", startOf("steps-cbr-no-header.mp3").mid(150)), 20},
        {make("hole.mp3", startOf("steps.mp3", 150'000) + QByteArray(500'000, '\0')), 9.3},
    };
    for (const auto& [url, seconds] : rows) {
        const Player player(ma_createPlayer(url, nullptr));
        ASSERT_TRUE(player) << url.absoluteString().toStdString();
        EXPECT_TRUE(waitUntil([&] { return ma_getState(player.get()).durationSeconds > 0; }));
        EXPECT_NEAR(ma_getState(player.get()).durationSeconds, seconds, 0.1);
    }
}

// A hole that the decoder falls into must hold up neither the device nor whoever seeks or stops it.
TEST(HostileFile, WithAHoleStopsWithoutWaiting) {
    const QByteArray ogg = startOf("steps.ogg");
    const QByteArray oggHole = fileWith("hole.ogg", ogg.left(25'000), qint64(1) << 30);
    QFile file(QFile::decodeName(oggHole));
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write(ogg.mid(ogg.lastIndexOf("OggS"))); // so that it tells its length
    file.close();
    for (const FileURL& url :
         {make("hole.flac", startOf("steps.flac", 25'000), huge), FileURL::fromPath(oggHole)}) {
        const Player player(ma_createPlayer(url, nullptr));
        ASSERT_TRUE(player && ma_play(player.get(), nullptr));
        EXPECT_TRUE(waitUntil([&] { return ma_getState(player.get()).positionSeconds > 2; }));
        QElapsedTimer timer;
        timer.start();
        ma_seek(player.get(), 15, nullptr);
        ma_stop(player.get());
        EXPECT_LT(timer.elapsed(), 5000) << url.absoluteString().toStdString();
    }
}

/// The left channel after a seek in a file whose ring buffer is full.
std::vector<float> soundAfterSeek(bool isDeviceStopped) {
    DecodeAhead file(testAudio("steps.wav"));
    EXPECT_TRUE(waitUntil([&] { return file.opened().has_value(); }));
    QTest::qWait(100);
    file.seek(10, 0, isDeviceStopped);
    EXPECT_TRUE(waitUntil([&] { return file.sought().has_value(); }));
    QTest::qWait(100);
    std::vector<float> sound;
    std::vector<StereoFrame> frames(480);
    constexpr std::size_t twoSeconds = 96'000;
    EXPECT_TRUE(waitUntil([&] {
        while (const std::size_t count = sound.size() < twoSeconds ? file.read(frames) : 0) {
            for (const StereoFrame& frame : std::span(frames).first(count))
                sound.push_back(frame.left);
        }
        return sound.size() >= twoSeconds;
    }));
    sound.resize(twoSeconds);
    return sound;
}

TEST(DecodeAhead, LosesNoFrameWhileADeviceHasYetToDropTheOldOnes) {
    EXPECT_TRUE(soundAfterSeek(true) == soundAfterSeek(false));
}

TEST(UnknownLength, IsToldByThePlayedFileWhereverASeekWent) {
    for (const double target : {0.0, 100.0}) {
        const Player player(ma_createPlayer(testAudio("short-no-length.flac"), nullptr));
        ASSERT_TRUE(player);
        ma_seek(player.get(), target, nullptr);
        ma_play(player.get(), nullptr);
        EXPECT_TRUE(waitUntil([&] { return ma_getState(player.get()).durationSeconds > 0; }));
        EXPECT_NEAR(ma_getState(player.get()).durationSeconds, 0.5, 0.01) << target;
    }
}

auto parsed(const char* hexadecimal) {
    const QByteArray bytes = QByteArray::fromHex(hexadecimal);
    return parseMpegFrameHeader(std::as_bytes(std::span(bytes)));
}

TEST(MpegFrameHeader, TellsItsFrame) {
    // The frame's bytes, its samples, and where its side information starts and how long it is.
    const std::pair<const char*, std::array<std::uint32_t, 4>> rows[] = {
        {"FFFB9000", {417, 1152, 4, 32}}, // 1, layer III, 128 kbit/s, 44.1 kHz
        {"FFFA92C0", {418, 1152, 6, 17}}, // with padding and checksum, mono
        {"FFF38000", {208, 576, 4, 17}},  // 2, layer III, 64 kbit/s, 22.05 kHz
        {"FFE340C0", {208, 576, 4, 9}},   // 2.5, 32 kbit/s, 11.025 kHz, mono
        {"FFFDC400", {768, 1152, 0, 0}},  // 1, layer II, 256 kbit/s, 48 kHz
        {"FFFFC200", {420, 384, 0, 0}},   // 1, layer I, 384 kbit/s, 44.1 kHz
        {"FFFB0000", {0, 1152, 4, 32}},   // free format
    };
    for (const auto& [bytes, numbers] : rows) {
        const auto header = parsed(bytes);
        ASSERT_TRUE(header);
        EXPECT_THAT(numbers, testing::ElementsAre(header->frameBytes, header->pcmFrames,
                                                  header->sideInfoStart, header->sideInfoBytes))
            << bytes;
    }
    for (const char* none : {"FFEB9000", "FFF99000", "FFFBF000", "FFFB9C00", "FF1B9000"})
        EXPECT_FALSE(parsed(none)) << none;
}

} // namespace
