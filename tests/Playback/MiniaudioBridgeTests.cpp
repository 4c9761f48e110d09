#include "Platform/MediaPlayer/SoundFiles.h"
#include "Playback/MiniaudioBridge.h"
#include "Playback/MpegAudioScan.h"
#include "Playback/MpegFrameHeader.h"
#include "Playback/TestAudio.h"

#include <QElapsedTimer>

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

/// A file `name` that begins with `bytes`, made as long as `size` by a hole.
FileURL make(const QByteArray& name, const QByteArray& bytes, qint64 size = 0) {
    return FileURL::fromPath(fileWith(name, bytes, size));
}

void expectRefused(const FileURL& url, int code) {
    std::optional<BridgeError> error;
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(ma_createPlayer(url, &error), nullptr) << url.absoluteString().toStdString();
    // The aim is 50 ms; a search through 4 GB takes half a minute.
    EXPECT_LT(timer.elapsed(), 1000) << url.absoluteString().toStdString();
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, code) << url.absoluteString().toStdString();
    EXPECT_EQ(ma_createPlayer(url, nullptr), nullptr);
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

TEST(HostileFile, IsNotEvenAFile) {
    const QByteArray pipe = fileWith("pipe", {}) + ".mp3";
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    expectRefused(FileURL::fromPath(pipe), invalidFile);
    expectRefused(FileURL::fromPath("/tmp"), isDirectory);
    expectRefused(testAudio("nothing.wav"), doesNotExist);
}

TEST(HostileFile, PlaysUnderAWrongNameOrWithSomeDamage) {
    const std::pair<FileURL, double> rows[] = {
        {make("flac.mp3", startOf("steps.flac")), 20},
        {make("mpeg.ogg", startOf("steps.mp3")), 20},
        {make("\xB8\xE8\xFF.ogg", startOf("steps.ogg")), 20},
        {make("cut.mp3", startOf("steps-cbr-no-header.mp3").mid(150)), 20},
        {make("hole.mp3", startOf("steps.mp3", 150'000) + QByteArray(500'000, '\0')), 20},
    };
    for (const auto& [url, seconds] : rows) {
        const Player player(ma_createPlayer(url, nullptr));
        ASSERT_TRUE(player) << url.absoluteString().toStdString();
        EXPECT_NEAR(ma_getState(player.get()).durationSeconds, seconds, 0.1);
    }
}

// A hole that the playing decoder falls into must hold up neither the device nor whoever stops it.
TEST(HostileFile, WithAHoleStopsWithoutWaiting) {
    const Player player(
        ma_createPlayer(make("hole.flac", startOf("steps.flac", 25'000), huge), nullptr));
    ASSERT_TRUE(player && ma_play(player.get(), nullptr)); // the hole begins at one second
    EXPECT_TRUE(waitUntil([&] { return ma_getState(player.get()).positionSeconds > 2; }));
    QElapsedTimer timer;
    timer.start();
    ma_seek(player.get(), 15, nullptr);
    ma_stop(player.get());
    EXPECT_LT(timer.elapsed(), 1000);
}

auto parsed(const char* hexadecimal) {
    const QByteArray bytes = QByteArray::fromHex(hexadecimal);
    return parseMpegFrameHeader(std::as_bytes(std::span(bytes)));
}

TEST(MpegFrameHeader, TellsItsFrame) {
    struct Row {
        const char* bytes;
        std::uint32_t frameBytes, pcmFrames, sideInfoStart, sideInfoBytes;
    };
    const Row rows[] = {
        {"FFFB9000", 417, 1152, 4, 32}, // 1, layer III, 128 kbit/s, 44.1 kHz
        {"FFFA92C0", 418, 1152, 6, 17}, // with padding and checksum, mono
        {"FFF38000", 208, 576, 4, 17},  // 2, layer III, 64 kbit/s, 22.05 kHz
        {"FFE340C0", 208, 576, 4, 9},   // 2.5, 32 kbit/s, 11.025 kHz, mono
        {"FFFDC400", 768, 1152, 0, 0},  // 1, layer II, 256 kbit/s, 48 kHz
        {"FFFFC200", 420, 384, 0, 0},   // 1, layer I, 384 kbit/s, 44.1 kHz
        {"FFFB0000", 0, 1152, 4, 32},   // free format
    };
    for (const Row& row : rows) {
        const auto header = parsed(row.bytes);
        ASSERT_TRUE(header);
        EXPECT_EQ(header->frameBytes, row.frameBytes);
        EXPECT_EQ(header->pcmFrames, row.pcmFrames);
        EXPECT_EQ(header->sideInfoStart, row.sideInfoBytes != 0 ? row.sideInfoStart : 0);
        EXPECT_EQ(header->sideInfoBytes, row.sideInfoBytes);
    }
    for (const char* none : {"FFEB9000", "FFF99000", "FFFBF000", "FFFB9C00", "FF1B9000"})
        EXPECT_FALSE(parsed(none)) << none;
}

} // namespace
