#include "Playback/MiniaudioBridge.h"
#include "Playback/MpegAudioScan.h"
#include "Playback/MpegFrameHeader.h"
#include "Playback/TestAudio.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tamsy;
using namespace tamsy::test;

namespace {

constexpr int doesNotExist = -7, isDirectory = -15, invalidFile = -10, noBackend = -203;

struct PlayerEnd {
    void operator()(BridgePlayer* player) const { ma_destroyPlayer(player); }
};
using Player = std::unique_ptr<BridgePlayer, PlayerEnd>;

Player open(QByteArrayView name) {
    return Player(ma_createPlayer(testAudio(name), nullptr));
}

TEST(MiniaudioBridge, TakesANullHandleForNothing) {
    double duration = 1;
    double position = 1;
    bool playing = true;
    EXPECT_FALSE(ma_playRaw(nullptr, nullptr) || ma_seekRaw(nullptr, 1, nullptr));
    ma_pauseRaw(nullptr);
    ma_stopRaw(nullptr);
    ma_setVolumeRaw(nullptr, 1);
    ma_destroyPlayerRaw(nullptr);
    ma_getStateRaw(nullptr, &duration, &position, &playing);
    EXPECT_TRUE(duration == 0 && position == 0 && !playing);
    ma_getStateRaw(open("short-0.1.wav").get(), nullptr, nullptr, nullptr);
}

TEST(MiniaudioBridge, PositionGoesWhereItIsToldAndOnPastTheEnd) {
    const Player player = open("short-0.3.wav");
    ASSERT_TRUE(player);
    EXPECT_TRUE(ma_seek(player.get(), 0.2, nullptr));
    EXPECT_EQ(ma_getState(player.get()).positionSeconds, 0.2);
    EXPECT_FALSE(ma_getState(player.get()).isPlaying);
    EXPECT_TRUE(ma_seek(player.get(), -3, nullptr));
    EXPECT_EQ(ma_getState(player.get()).positionSeconds, 0);
    ASSERT_TRUE(ma_play(player.get(), nullptr));
    EXPECT_TRUE(waitUntil([&] { return ma_getState(player.get()).positionSeconds > 0.4; }));
    EXPECT_TRUE(ma_getState(player.get()).isPlaying);
    EXPECT_NEAR(ma_getState(player.get()).durationSeconds, 0.3, 0.001);
    ma_stop(player.get());
    EXPECT_EQ(ma_getState(player.get()).positionSeconds, 0);
    EXPECT_FALSE(ma_getState(player.get()).isPlaying);
}

TEST(MiniaudioBridge, AnUnknownLengthIsKnownWhenThePlayerHasReachedIt) {
    const Player player = open("short-flac.oga");
    ASSERT_TRUE(player);
    EXPECT_EQ(ma_getState(player.get()).durationSeconds, 0);
    ASSERT_TRUE(ma_play(player.get(), nullptr));
    EXPECT_TRUE(waitUntil([&] { return ma_getState(player.get()).durationSeconds > 0; }));
    EXPECT_NEAR(ma_getState(player.get()).durationSeconds, 0.5, 0.001);
}

class HostileFile : public testing::Test {
  protected:
    /// A file `name` that begins with `bytes`, made 4 GB long by a hole when `isHuge`.
    FileURL make(const QByteArray& name, const QByteArray& bytes, bool isHuge) {
        const QByteArray path = QFile::encodeName(directory.path()) + '/' + name;
        const int descriptor = ::open(path.constData(), O_CREAT | O_WRONLY, 0600);
        EXPECT_EQ(::write(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())),
                  bytes.size());
        EXPECT_TRUE(!isHuge || ::ftruncate(descriptor, off_t(4) << 30) == 0);
        ::close(descriptor);
        return FileURL::fromPath(path);
    }

    static QByteArray bytesOf(QByteArrayView name, qint64 count) {
        QFile file(QFile::decodeName(testAudio(name).path()));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.read(count);
    }

    void expectRefused(const FileURL& url, int code) {
        std::optional<BridgeError> error;
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(ma_createPlayer(url, &error), nullptr) << url.absoluteString().toStdString();
        // The aim is 50 ms; a search through 4 GB takes half a minute.
        EXPECT_LT(timer.elapsed(), 1000) << url.absoluteString().toStdString();
        ASSERT_TRUE(error);
        EXPECT_EQ(error->domain, "miniaudio");
        EXPECT_EQ(error->code, code) << url.absoluteString().toStdString();
        EXPECT_EQ(error->description, "Failed to open audio file");
        EXPECT_EQ(ma_createPlayer(url, nullptr), nullptr);
    }

    QTemporaryDir directory;
};

TEST_F(HostileFile, IsRefusedAtOnce) {
    const QByteArray flacStart = bytesOf("steps.flac", 42);
    expectRefused(make("zeros.mp3", {}, true), noBackend);
    expectRefused(make("chunks.wav", "RIFF\xFF\xFF\xFF\x7FWAVE", true), noBackend);
    expectRefused(make("chunks.aiff.wav",
                       "FORM\x7F\xFF\xFF\xFF"
                       "AIFF",
                       true),
                  noBackend);
    expectRefused(make("blocks.flac", flacStart, true), noBackend);
    expectRefused(make("pages.ogg", bytesOf("steps.ogg", 27), true), noBackend);
    expectRefused(make("one-minute-in.mp3", bytesOf("steps.mp3", 320'000), true), noBackend);
    expectRefused(make("film.mp3", bytesOf("steps.m4a", 1 << 20), false), noBackend);
    expectRefused(make("text.mp3", QByteArray(5000, 'x'), false), noBackend);
    expectRefused(make("tag-past-end.mp3", QByteArray("ID3\3\0\0\x7F\x7F\x7F\x7F", 10), false),
                  noBackend);
    expectRefused(make("empty.mp3", {}, false), noBackend);
}

TEST_F(HostileFile, IsNotEvenAFile) {
    const QByteArray pipe = QFile::encodeName(directory.path()) + "/pipe.mp3";
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    expectRefused(FileURL::fromPath(pipe), invalidFile);
    expectRefused(FileURL::fromPath(QFile::encodeName(directory.path())), isDirectory);
    expectRefused(testAudio("nothing.wav"), doesNotExist);
}

TEST_F(HostileFile, PlaysUnderAWrongNameOrWithSomeDamage) {
    const std::pair<FileURL, double> rows[] = {
        {make("flac.mp3", bytesOf("steps.flac", 1 << 30), false), 20},
        {make("mpeg.ogg", bytesOf("steps.mp3", 1 << 30), false), 20},
        {make("\xB8\xE8\xFF.ogg", bytesOf("steps.ogg", 1 << 30), false), 20},
        {make("cut.mp3", bytesOf("steps-cbr-no-header.mp3", 1 << 30).mid(150), false), 20},
        {make("hole.mp3", bytesOf("steps.mp3", 150'000) + QByteArray(500'000, '\0'), false), 20},
    };
    for (const auto& [url, seconds] : rows) {
        const Player player(ma_createPlayer(url, nullptr));
        ASSERT_TRUE(player) << url.absoluteString().toStdString();
        EXPECT_NEAR(ma_getState(player.get()).durationSeconds, seconds, 0.1);
    }
}

// A hole that the playing decoder falls into must hold up neither the device nor whoever stops it.
TEST_F(HostileFile, WithAHoleStopsWithoutWaiting) {
    const Player player(
        ma_createPlayer(make("hole.flac", bytesOf("steps.flac", 25'000), true), nullptr));
    ASSERT_TRUE(player && ma_play(player.get(), nullptr)); // the hole begins at one second
    EXPECT_TRUE(waitUntil([&] { return ma_getState(player.get()).positionSeconds > 2; }));
    QElapsedTimer timer;
    timer.start();
    ma_seek(player.get(), 15, nullptr);
    ma_stop(player.get());
    EXPECT_LT(timer.elapsed(), 1000);
}

TEST(MpegFrameHeader, TellsItsFrame) {
    struct Row {
        std::array<unsigned char, 4> bytes;
        std::uint32_t frameBytes, pcmFrames, sideInfoStart, sideInfoBytes;
    };
    const Row rows[] = {
        {{0xFF, 0xFB, 0x90, 0x00}, 417, 1152, 4, 32}, // 1, layer III, 128 kbit/s, 44.1 kHz
        {{0xFF, 0xFA, 0x92, 0xC0}, 418, 1152, 6, 17}, // with padding and checksum, mono
        {{0xFF, 0xF3, 0x80, 0x00}, 208, 576, 4, 17},  // 2, layer III, 64 kbit/s, 22.05 kHz
        {{0xFF, 0xE3, 0x40, 0xC0}, 208, 576, 4, 9},   // 2.5, 32 kbit/s, 11.025 kHz, mono
        {{0xFF, 0xFD, 0xC4, 0x00}, 768, 1152, 0, 0},  // 1, layer II, 256 kbit/s, 48 kHz
        {{0xFF, 0xFF, 0xC2, 0x00}, 420, 384, 0, 0},   // 1, layer I, 384 kbit/s, 44.1 kHz
        {{0xFF, 0xFB, 0x00, 0x00}, 0, 1152, 4, 32},   // free format
    };
    for (const Row& row : rows) {
        const auto header = parseMpegFrameHeader(std::as_bytes(std::span(row.bytes)));
        ASSERT_TRUE(header);
        EXPECT_EQ(header->frameBytes, row.frameBytes);
        EXPECT_EQ(header->pcmFrames, row.pcmFrames);
        EXPECT_EQ(header->sideInfoStart, row.sideInfoBytes != 0 ? row.sideInfoStart : 0);
        EXPECT_EQ(header->sideInfoBytes, row.sideInfoBytes);
    }
    for (const std::array<unsigned char, 4> none :
         {std::array<unsigned char, 4>{0xFF, 0xEB, 0x90, 0},
          {0xFF, 0xF9, 0x90, 0},
          {0xFF, 0xFB, 0xF0, 0},
          {0xFF, 0xFB, 0x9C, 0},
          {0xFF, 0x1B, 0x90, 0}})
        EXPECT_FALSE(parseMpegFrameHeader(std::as_bytes(std::span(none))));
}

} // namespace
