#include "Playback/CompositePlaybackEngine.h"
#include "Playback/TestAudio.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <cmath>
#include <csignal>
#include <string>

using namespace tamsy;
using namespace tamsy::test;

namespace {

/// The folder of test files behind a slow file system, mounted anew so that nothing is cached.
class SlowMount {
  public:
    SlowMount(const char* milliseconds, const char* megabytesPerSecond) {
        program_.setProcessChannelMode(QProcess::ForwardedChannels);
        program_.start(QStringLiteral(SLOW_MOUNT),
                       {QFile::decodeName(qgetenv("TAMSY_TEST_AUDIO")), point_.path(),
                        QString::fromLatin1(milliseconds),
                        QString::fromLatin1(megabytesPerSecond)});
        isMounted_ =
            waitUntil([this] {
                return program_.state() == QProcess::NotRunning || !QDir(point_.path()).isEmpty();
            }) &&
            program_.state() != QProcess::NotRunning;
    }
    ~SlowMount() {
        hang(false);
        QProcess::execute(u"fusermount3"_qs, {u"-uz"_qs, point_.path()});
        program_.waitForFinished();
    }
    SlowMount(const SlowMount&) = delete;
    SlowMount& operator=(const SlowMount&) = delete;

    [[nodiscard]] bool isMounted() const { return isMounted_; }
    [[nodiscard]] FileURL file(const char* name) const {
        return FileURL::fromPath(QFile::encodeName(point_.path())).appending(name);
    }
    void hang(bool on) { ::kill(static_cast<pid_t>(program_.processId()), on ? SIGUSR1 : SIGUSR2); }

  private:
    QTemporaryDir point_;
    QProcess program_;
    bool isMounted_ = false;
};

/// The longest time for which the event loop stood still, in milliseconds.
class LongestBlock {
  public:
    LongestBlock() {
        QObject::connect(&timer_, &QTimer::timeout,
                         [this] { longest_ = std::max(longest_, sinceLast_.restart()); });
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.start(5);
        sinceLast_.start();
    }
    [[nodiscard]] qint64 milliseconds() const { return std::max(longest_, sinceLast_.elapsed()); }

  private:
    QTimer timer_;
    QElapsedTimer sinceLast_;
    qint64 longest_ = 0;
};

class SlowFile : public testing::Test {
  protected:
    SlowFile() {
        engine.setUpdateInterval(0.05);
        engine.setVolume(0.05F);
    }

    void play(const FileURL& url) {
        engine.stop();
        engine.load(url);
        engine.play();
    }
    [[nodiscard]] double time() const { return engine.currentTimePublisher().value(); }
    [[nodiscard]] double length() const { return engine.durationPublisher().value(); }
    [[nodiscard]] bool isPlaying() const { return engine.isPlayingPublisher().value(); }

    CompositePlaybackEngine engine;
};

constexpr const char* noMount = "no FUSE mounts here";
constexpr qint64 blockLimit = 200; // milliseconds: a file may take 50, a busy machine the rest

TEST_F(SlowFile, SoundsSoonAfterTheClickWithoutHoldingUpTheWindow) {
    play(testAudio("tone-500.mp3")); // the first device takes longer to open
    ASSERT_TRUE(waitUntil([this] { return time() > 0; }));
    constexpr qint64 limit = 700; // milliseconds: 0.6 s, and what two reports may be apart
    for (const std::string name :
         {"minutes-4.wav", "minutes-4.flac", "minutes-4.ogg", "minutes-4.mp3", "minutes-4.m4a",
          "minutes-4.aiff", "minutes-4.caf", "minutes-4.aac", "hour-header.mp3",
          "hour-no-header.mp3"}) {
        const SlowMount wifi("8", "4");
        if (!wifi.isMounted())
            GTEST_SKIP() << noMount;
        const LongestBlock block;
        QElapsedTimer timer;
        timer.start();
        play(wifi.file(name.c_str()));
        EXPECT_TRUE(waitUntil([this] { return time() > 0; }, 30'000)) << name;
        const qint64 first = timer.elapsed();
        std::printf("%-20s sound after %4lld ms, window blocked %3lld ms\n", name.c_str(), first,
                    block.milliseconds());
        EXPECT_LT(first, limit) << name;
        EXPECT_LT(block.milliseconds(), blockLimit) << name;
        const double seconds = name.starts_with("hour") ? 0 : 240; // an hour's walk takes too long
        EXPECT_TRUE(waitUntil([&] { return seconds == 0 || std::abs(length() - seconds) < 0.1; }))
            << name;
        engine.stop();
    }
}

TEST_F(SlowFile, PlaysThroughAShortHangAndSaysSoInALongOne) {
    for (const char* name : {"minutes-4.mp3", "minutes-4.m4a"}) {
        SlowMount usb("2", "15");
        if (!usb.isMounted())
            GTEST_SKIP() << noMount;
        play(usb.file(name));
        ASSERT_TRUE(waitUntil([this] { return time() > 5; }, 10'000)) << name;
        std::string sent;
        const auto subscription =
            engine.isPlayingPublisher().subscribe([&](bool value) { sent += value ? 'T' : 'F'; });
        const LongestBlock block;
        const double before = time();
        usb.hang(true);
        QTest::qWait(3000);
        EXPECT_EQ(sent.find('F'), std::string::npos) << name;
        EXPECT_NEAR(time() - before, 3, 0.3) << name;
        EXPECT_TRUE(waitUntil([this] { return !isPlaying(); }, 5000)) << name;
        usb.hang(false);
        const double held = time();
        EXPECT_TRUE(waitUntil([&] { return isPlaying() && time() > held + 0.3; })) << name;

        usb.hang(true); // for good: another file plays all the same
        play(testAudio("tone-500.mp3"));
        EXPECT_TRUE(waitUntil([this] { return time() > 0.2; })) << name;
        play(testAudio("tone-600.m4a"));
        EXPECT_TRUE(waitUntil([this] { return time() > 0.2; })) << name;
        EXPECT_LT(block.milliseconds(), blockLimit) << name;
        engine.stop();
    }
}

TEST_F(SlowFile, ThatCannotBeOpenedAfterAllLeavesWhatAFailedLoadDoes) {
    const SlowMount slow("60", "4");
    if (!slow.isMounted())
        GTEST_SKIP() << noMount;
    play(slow.file("nowhere.mp3"));
    EXPECT_TRUE(waitUntil([this] { return !isPlaying(); }));
    EXPECT_EQ(time(), 0);
    std::string sent;
    const auto subscription =
        engine.isPlayingPublisher().subscribe([&](bool value) { sent += value ? 'T' : 'F'; });
    QTest::qWait(500);
    engine.play();
    QTest::qWait(100);
    EXPECT_EQ(sent.find('T'), std::string::npos);
}

} // namespace
