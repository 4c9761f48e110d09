#include "Playback/AVPlaybackEngine.h"
#include "Playback/CompositePlaybackEngine.h"
#include "Playback/FakeEngine.h"
#include "Playback/MiniaudioPlaybackEngine.h"
#include "Playback/TestAudio.h"

#include <QElapsedTimer>
#include <gmock/gmock.h>

#include <cmath>
#include <limits>

using namespace tamsy;
using namespace tamsy::test;
using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// Everything that an engine sends, in order.
struct Sent {
    explicit Sent(const AudioPlaybackEngine& engine) {
        subscriptions.push_back(engine.isPlayingPublisher().subscribe([this](bool value) {
            playing.push_back(value);
            order += value ? 'T' : 'F';
        }));
        subscriptions.push_back(engine.durationPublisher().subscribe([this](double value) {
            durations.push_back(value);
            order += 'd';
        }));
        subscriptions.push_back(engine.currentTimePublisher().subscribe([this](double value) {
            times.push_back(value);
            order += 't';
        }));
    }

    void clear() {
        playing.clear();
        durations.clear();
        times.clear();
        order.clear();
    }

    std::vector<bool> playing;
    std::vector<double> durations;
    std::vector<double> times;
    std::string order;
    Subscriptions subscriptions;
};

struct Kind {
    const char* name;
    const char* file; // four seconds
    std::unique_ptr<AudioPlaybackEngine> (*make)();
};

template <typename Engine>
std::unique_ptr<AudioPlaybackEngine> make() {
    return std::make_unique<Engine>();
}

class EngineContract : public testing::TestWithParam<Kind> {
  protected:
    EngineContract() { engine->setVolume(0.05F); }

    void loadFile() {
        engine->load(testAudio(GetParam().file));
        ASSERT_TRUE(waitUntil([&] { return duration() > 0; }));
    }

    /// Waits while a file plays; the fake's time is advanced by hand.
    template <typename Condition>
    bool playUntil(Condition condition, int limit = 5000) {
        auto* fake = dynamic_cast<FakeEngine*>(engine.get());
        return waitUntil(
            [&] {
                if (fake != nullptr)
                    fake->advance(fake->updateInterval);
                return condition();
            },
            limit);
    }

    [[nodiscard]] bool isPlaying() const { return engine->isPlayingPublisher().value(); }
    [[nodiscard]] double duration() const { return engine->durationPublisher().value(); }
    [[nodiscard]] double time() const { return engine->currentTimePublisher().value(); }

    const std::unique_ptr<AudioPlaybackEngine> engine = GetParam().make();
};

TEST_P(EngineContract, WithNothingLoadedOnlyStopSends) {
    Sent sent(*engine);
    EXPECT_EQ(sent.order, "Fdt");
    EXPECT_THAT(sent.durations, ElementsAre(0));
    EXPECT_THAT(sent.times, ElementsAre(0));
    sent.clear();
    engine->play();
    engine->pause();
    engine->seek(1);
    engine->setUpdateInterval(0.25);
    QTest::qWait(100);
    EXPECT_THAT(sent.order, IsEmpty());
    engine->stop();
    const bool hasNoEngineYet = GetParam().make == make<CompositePlaybackEngine>;
    EXPECT_EQ(sent.order.substr(0, 2), hasNoEngineYet ? "" : "Ft");
}

TEST_P(EngineContract, ALoadedFileIsPausedAtItsStartUntilItIsPlayed) {
    loadFile();
    const Sent late(*engine);
    EXPECT_THAT(late.playing, ElementsAre(false));
    ASSERT_THAT(late.durations, SizeIs(1));
    EXPECT_NEAR(late.durations[0], 4, 0.1);
    EXPECT_THAT(late.times, ElementsAre(0));
    engine->play();
    EXPECT_TRUE(playUntil([&] { return isPlaying() && time() > 0.2; }));
    engine->pause();
    EXPECT_TRUE(waitUntil([&] { return !isPlaying(); }));
    const double held = time();
    QTest::qWait(150);
    EXPECT_NEAR(time(), held, 0.05);
    engine->play();
    EXPECT_TRUE(playUntil([&] { return time() > held + 0.1; }));
    EXPECT_LT(time(), held + 1);
}

TEST_P(EngineContract, StopTellsItBeforeItReturnsAndFreesTheFile) {
    loadFile();
    engine->play();
    ASSERT_TRUE(playUntil([&] { return time() > 0; }));
    Sent sent(*engine);
    sent.clear();
    engine->stop();
    EXPECT_EQ(sent.order.substr(0, 2), "Ft");
    EXPECT_FALSE(isPlaying());
    EXPECT_EQ(time(), 0);
    sent.clear();
    engine->play();
    QTest::qWait(150);
    EXPECT_THAT(sent.order, IsEmpty());
}

TEST_P(EngineContract, ASeekIsReportedAtOnceAndKeepsWhatWasOn) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    loadFile();
    engine->setUpdateInterval(10); // no periodic report comes to help
    engine->seek(1.5);
    EXPECT_TRUE(waitUntil([&] { return std::abs(time() - 1.5) <= 0.05; }, 500));
    EXPECT_FALSE(isPlaying());
    engine->play();
    ASSERT_TRUE(waitUntil([&] { return isPlaying(); }));
    for (const auto& row : {std::pair(3.0, 3.0), {0.5, 0.5}, {-3.0, 0.0}, {std::nan(""), 0.0}}) {
        engine->seek(row.first);
        EXPECT_TRUE(waitUntil([&] { return std::abs(time() - row.second) <= 0.05; }, 500))
            << row.first;
        EXPECT_TRUE(isPlaying());
    }
    engine->setUpdateInterval(0.05);
    engine->seek(infinite);
    EXPECT_TRUE(playUntil([&] { return !isPlaying() || time() > duration() - 0.15; }));
}

TEST_P(EngineContract, ReportsComeAtTheIntervalAndNoFasterThanTheLeast) {
    if (dynamic_cast<FakeEngine*>(engine.get()) != nullptr)
        GTEST_SKIP() << "its time is a test's";
    loadFile();
    engine->setUpdateInterval(0.01);
    engine->play();
    ASSERT_TRUE(waitUntil([&] { return time() > 0; }));
    const Sent sent(*engine);
    const double from = time();
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(waitUntil([&] { return sent.times.size() > 20; }));
    const double seconds = static_cast<double>(timer.elapsed()) / 1000;
    EXPECT_NEAR(seconds, 20 * 0.05, 0.15);
    EXPECT_NEAR(time() - from, seconds, 0.1); // in real time, with or without a sound device
    EXPECT_THAT(sent.durations, Each(Ge(3.9)));
}

TEST_P(EngineContract, AFileThatCannotBeOpenedDoesNotStart) {
    auto* fake = dynamic_cast<FakeEngine*>(engine.get());
    if (fake != nullptr)
        fake->opensFiles = false;
    Sent sent(*engine);
    for (const char* path : {"/nonexistent/a.mp3", "/proc/self/status", "/", "/dev/zero"}) {
        engine->load(FileURL::fromPath(path));
        engine->play();
        QTest::qWait(50);
    }
    EXPECT_THAT(sent.playing, Each(false));
    EXPECT_THAT(sent.times, Each(0));
}

std::unique_ptr<AudioPlaybackEngine> makeFake() {
    auto fake = std::make_unique<FakeEngine>();
    fake->loadedDuration = 4;
    return fake;
}

INSTANTIATE_TEST_SUITE_P(
    Engines, EngineContract,
    testing::Values(Kind{"Fake", "tone-800.wav", makeFake},
                    Kind{"Miniaudio", "tone-500.mp3", make<MiniaudioPlaybackEngine>},
                    Kind{"AV", "tone-600.m4a", make<AVPlaybackEngine>},
                    Kind{"Composite", "tone-1200.flac", make<CompositePlaybackEngine>}),
    [](const auto& row) { return row.param.name; });

} // namespace
