#include "Playback/CompositePlaybackEngine.h"
#include "Playback/FFmpeg/AVPlaybackEngine.h"
#include "Playback/Miniaudio/MiniaudioPlaybackEngine.h"
#include "Playback/TestAudio.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

using namespace tamsy;
using namespace tamsy::test;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

/// Everything that an engine sends, in order.
struct Sent {
    explicit Sent(const AudioPlaybackEngine& engine) {
        subscriptions.push_back(engine.isPlayingPublisher().subscribe(
            [this](bool value) { order += value ? 'T' : 'F'; }));
        subscriptions.push_back(
            engine.durationPublisher().subscribe([this](double) { order += 'd'; }));
        subscriptions.push_back(
            engine.currentTimePublisher().subscribe([this](double) { order += 't'; }));
    }

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

    [[nodiscard]] bool isPlaying() const { return engine->isPlayingPublisher().value(); }
    [[nodiscard]] double duration() const { return engine->durationPublisher().value(); }
    [[nodiscard]] double time() const { return engine->currentTimePublisher().value(); }

    const std::unique_ptr<AudioPlaybackEngine> engine = GetParam().make();
};

TEST_P(EngineContract, WithNothingLoadedOnlyStopSends) {
    Sent sent(*engine);
    EXPECT_EQ(sent.order, "Fdt");
    sent.order.clear();
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
    EXPECT_EQ(late.order, "Fdt");
    EXPECT_NEAR(duration(), 4, 0.1);
    EXPECT_EQ(time(), 0);
    engine->play();
    EXPECT_TRUE(waitUntil([&] { return isPlaying() && time() > 0.2; }));
    engine->pause();
    EXPECT_TRUE(waitUntil([&] { return !isPlaying(); }));
    const double held = time();
    QTest::qWait(150);
    EXPECT_NEAR(time(), held, 0.05);
}

TEST_P(EngineContract, StopTellsItBeforeItReturnsAndFreesTheFile) {
    loadFile();
    engine->play();
    ASSERT_TRUE(waitUntil([&] { return time() > 0; }));
    Sent sent(*engine);
    sent.order.clear();
    engine->stop();
    EXPECT_EQ(sent.order.substr(0, 2), "Ft");
    EXPECT_FALSE(isPlaying());
    EXPECT_EQ(time(), 0);
    sent.order.clear();
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
    EXPECT_TRUE(waitUntil([&] { return !isPlaying() || time() > duration() - 0.15; }));
}

TEST_P(EngineContract, AFileThatCannotBeOpenedDoesNotStart) {
    const Sent sent(*engine);
    for (const char* path : {"/nonexistent/a.mp3", "/proc/self/status", "/", "/dev/zero"}) {
        engine->load(FileURL::fromPath(path));
        engine->play();
        QTest::qWait(50);
    }
    EXPECT_THAT(sent.order, Not(HasSubstr("T")));
    EXPECT_EQ(time(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Engines, EngineContract,
    testing::Values(Kind{"Miniaudio", "tone-500.mp3", make<MiniaudioPlaybackEngine>},
                    Kind{"AV", "tone-600.m4a", make<AVPlaybackEngine>},
                    Kind{"Composite", "tone-1200.flac", make<CompositePlaybackEngine>}),
    [](const auto& row) { return row.param.name; });

} // namespace
