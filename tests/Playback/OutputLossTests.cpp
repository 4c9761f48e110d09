#include "Playback/CompositePlaybackEngine.h"
#include "Playback/SoundRecording.h"
#include "Playback/TestAudio.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cmath>
#include <csignal>

#include <unistd.h>

using namespace tamsy;
using namespace tamsy::test;

namespace {

/// A sound server of this program's own, which can be killed and started again.
class SoundServer {
  public:
    SoundServer() {
        for (const char* name : {"PULSE_RUNTIME_PATH", "PULSE_STATE_PATH", "PULSE_CONFIG_PATH"})
            qputenv(name, QFile::encodeName(directory_.path()));
        qputenv("PULSE_SERVER", "unix:" + QFile::encodeName(socket()));
    }
    ~SoundServer() { kill(); }

    void start() {
        server_.start(
            QStringLiteral(TAMSY_TOOLS "/pulseaudio"),
            {u"--daemonize=no"_qs, u"--use-pid-file=no"_qs, u"--exit-idle-time=-1"_qs,
             u"--disallow-exit"_qs, u"-n"_qs, u"--log-target=null"_qs,
             u"--load=module-null-sink sink_name=tamsy norewinds=1"_qs,
             u"--load=module-native-protocol-unix auth-anonymous=1 socket="_qs + socket()});
        ASSERT_TRUE(waitUntil([this] { return control({u"info"_qs}); }, 10'000));
    }
    bool loadOutput() {
        return control({u"load-module"_qs, u"module-null-sink"_qs, u"sink_name=tamsy"_qs});
    }
    void kill() {
        server_.kill();
        server_.waitForFinished();
        QFile::remove(socket());
    }
    void freeze(bool isFrozen) {
        ::kill(static_cast<pid_t>(server_.processId()), isFrozen ? SIGSTOP : SIGCONT);
    }
    bool control(const QStringList& arguments) {
        QProcess pactl;
        pactl.setStandardErrorFile(QProcess::nullDevice());
        pactl.setStandardOutputFile(QProcess::nullDevice());
        pactl.start(u"pactl"_qs, arguments);
        return pactl.waitForFinished() && pactl.exitCode() == 0;
    }

  private:
    [[nodiscard]] QString socket() const { return directory_.filePath(u"socket"_qs); }

    QTemporaryDir directory_;
    QProcess server_;
};

class OutputLoss : public testing::TestWithParam<const char*> {
  protected:
    OutputLoss() {
        server.start();
        engine.setVolume(1);
        play();
        EXPECT_TRUE(waitUntil([this] { return time() > 0.4; }));
    }

    void play() {
        engine.load(testAudio(GetParam()));
        engine.play();
    }

    [[nodiscard]] double time() const { return engine.currentTimePublisher().value(); }
    [[nodiscard]] bool isPlaying() const { return engine.isPlayingPublisher().value(); }

    /// Whether sound comes out of the server, from now on.
    static void expectSound() {
        SoundRecording recording;
        recording.recordMore(0.6);
        EXPECT_GT(level(recording.from(recording.size() / 2)), 0.1);
    }

    SoundServer server;
    CompositePlaybackEngine engine;
};

TEST_P(OutputLoss, PlaysOnAtItsPlaceOnceTheServerIsBack) {
    const double lost = time();
    QElapsedTimer timer;
    timer.start();
    server.kill();
    QTest::qWait(300);
    server.start();
    EXPECT_TRUE(waitUntil([&] { return time() > lost + 1; }, 8000));
    EXPECT_LT(time() - lost, static_cast<double>(timer.elapsed()) / 1000 + 0.1);
    EXPECT_TRUE(isPlaying());
    expectSound();
}

TEST_P(OutputLoss, PausesWithoutAnyOutputAndGoesOnByItself) {
    const double lost = time();
    ASSERT_TRUE(server.control({u"unload-module"_qs, u"module-null-sink"_qs}));
    EXPECT_TRUE(waitUntil([&] { return !isPlaying(); }, 8000));
    EXPECT_NEAR(time(), lost, 0.6);
    ASSERT_TRUE(server.loadOutput());
    EXPECT_TRUE(waitUntil([&] { return isPlaying() && time() > lost + 0.7; }, 4000));
    expectSound();
}

TEST_P(OutputLoss, WhatBeginsWithoutAServerIsHeardWhenThereIsOne) {
    server.kill();
    play();
    EXPECT_TRUE(waitUntil([this] { return time() > 0.3; }));
    server.start();
    QTest::qWait(1000);
    expectSound();
}

TEST_P(OutputLoss, AServerThatHangsHoldsNobodyUp) {
    server.freeze(true);
    const auto costs = [](const auto& action) {
        QElapsedTimer timer;
        timer.start();
        action();
        return timer.elapsed();
    };
    EXPECT_LT(costs([&] { engine.seek(5); }), 300);
    EXPECT_LT(costs([&] { engine.pause(); }), 300);
    EXPECT_LT(costs([&] { engine.stop(); }), 300);
    EXPECT_LT(costs([&] { play(); }), 300);
    EXPECT_FALSE(waitUntil([this] { return isPlaying(); }, 2500));
    EXPECT_LT(costs([&] { engine.stop(); }), 300);
    server.freeze(false);
    play();
    EXPECT_TRUE(waitUntil([this] { return time() > 0.5; }));
    expectSound();
}

TEST_P(OutputLoss, AServerThatHungPlaysNothingThatWasLeftMeanwhile) {
    engine.pause();
    SoundRecording recording;
    recording.recordMore(0.3);
    const std::size_t paused = recording.size();
    server.freeze(true);
    engine.play();
    QTest::qWait(100);
    engine.stop();
    server.freeze(false);
    recording.recordMore(0.5);
    EXPECT_LT(level(recording.from(paused)), 1e-5);
}

TEST_P(OutputLoss, AnOutputThatIsSilentForAWhileIsWaitedFor) {
    const double before = time();
    ASSERT_TRUE(server.control({u"suspend-sink"_qs, u"tamsy"_qs, u"1"_qs}));
    EXPECT_FALSE(waitUntil([this] { return !isPlaying(); }, 4000));
    EXPECT_NEAR(time(), before, 0.6);
    ASSERT_TRUE(server.control({u"suspend-sink"_qs, u"tamsy"_qs, u"0"_qs}));
    EXPECT_TRUE(waitUntil([&] { return time() > before + 1; }));
    expectSound();
}

TEST_P(OutputLoss, WhilePausedOrSoughtIsNoMatter) {
    engine.pause();
    server.kill();
    QElapsedTimer timer;
    timer.start();
    engine.seek(5);
    EXPECT_TRUE(waitUntil([this] { return std::abs(time() - 5) < 0.05; }));
    EXPECT_LT(timer.elapsed(), 1000);
    server.start();
    engine.play();
    EXPECT_TRUE(waitUntil([this] { return time() > 5.5; }));
    expectSound();
}

TEST_P(OutputLoss, NothingIsLostByAMachineThatSleeps) {
    const double before = time();
    QProcess::startDetached(u"sh"_qs,
                            {u"-c"_qs, u"sleep 2; kill -CONT "_qs + QString::number(::getpid())});
    ::raise(SIGSTOP);
    EXPECT_TRUE(waitUntil([&] { return time() > before + 1; }));
    EXPECT_TRUE(isPlaying());
    expectSound();
}

INSTANTIATE_TEST_SUITE_P(Engines, OutputLoss, testing::Values("steps.mp3", "steps.m4a"));

} // namespace
