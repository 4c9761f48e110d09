#include "Playback/FakeEngine.h"
#include "ViewModels/LibraryFixture.h"
#include "ViewModels/PlayerViewModel.h"

#include <QPointer>
#include <QSignalSpy>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>

using namespace std::chrono_literals;
using namespace tamsy;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

/// Runs delayed actions when a test advances the time.
class FakeClock {
  public:
    PlayerDependencies::RunAfter runAfter() {
        return [this](std::chrono::milliseconds delay, QObject* context,
                      std::function<void()> action) {
            due_.push_back({now_ + delay, context, std::move(action)});
        };
    }

    void advance(std::chrono::milliseconds time) {
        now_ += time;
        for (;;) {
            const auto next = std::ranges::min_element(due_, {}, &Due::time);
            if (next == due_.end() || next->time > now_)
                return;
            const Due due = std::move(*next);
            due_.erase(next);
            if (due.context)
                due.action();
        }
    }

  private:
    struct Due {
        std::chrono::milliseconds time;
        QPointer<QObject> context;
        std::function<void()> action;
    };

    std::chrono::milliseconds now_{0};
    std::vector<Due> due_;
};

/// A player on an engine without sound and a clock that the test turns, over a folder of three
/// files.
class PlayerViewModelTest : public testing::Test, protected LibraryFixture {
  protected:
    PlayerViewModelTest() {
        engine->loadedDuration = 10;
        process();
    }

    void SetUp() override {
        add(u"m"_qs, {u"1"_qs, u"2"_qs, u"3"_qs});
        player.attachLibrary(library.get());
    }

    static void process() {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents(); // what a handler itself has sent
    }

    void start(int row) {
        player.play(url(row));
        process();
        engine->calls.clear();
    }

    [[nodiscard]] FileURL url(int row) const { return library->filteredTracks().at(row).url; }
    [[nodiscard]] std::string load(int row) const {
        return "load " + url(row).absoluteString().toStdString();
    }

    void advance(std::chrono::milliseconds time) {
        clock.advance(time);
        process();
    }

    FakeClock clock;
    FakeEngine* engine = new FakeEngine; // the player owns it
    PlayerViewModel player{std::unique_ptr<AudioPlaybackEngine>(engine),
                           {.runAfter = clock.runAfter()}};
};

TEST_F(PlayerViewModelTest, StartsAFileInItsOrder) {
    EXPECT_THAT(engine->calls, ElementsAre("interval 0.25"));
    engine->calls.clear();
    player.togglePlayPause();
    EXPECT_THAT(engine->calls, ElementsAre("play"));
    engine->calls.clear();
    player.play(url(1));
    EXPECT_THAT(engine->calls, ElementsAre("stop", load(1), "play"));
    EXPECT_EQ(player.currentURL(), url(1));
    EXPECT_FALSE(player.isPlaying()); // it arrives with the next event
    process();
    EXPECT_TRUE(player.isPlaying());
    EXPECT_EQ(player.duration(), 10);
    engine->calls.clear();
    player.setVolume(0.5F);
    EXPECT_THAT(engine->calls, ElementsAre("volume 0.5")); // though it was 0.5 before
}

TEST_F(PlayerViewModelTest, DropsTheTitleOfAFileThatWasLeft) {
    QSignalSpy titles(&player, &PlayerViewModel::currentTitleChanged);
    player.play(url(0));
    player.play(url(2));
    ASSERT_TRUE(QTest::qWaitFor([&] { return player.currentTitle() == u"3"_qs; }));
    EXPECT_EQ(titles.size(), 1);
}

TEST_F(PlayerViewModelTest, HoldsTheDisplayUntilASeekIsConfirmed) {
    start(0);
    engine->currentTimeSubject_.send(std::nan(""));
    process();
    EXPECT_EQ(player.currentTime(), 0);
    player.setIsSeeking(true);
    player.seek(5);
    EXPECT_EQ(player.currentTime(), 5);
    engine->currentTimeSubject_.send(1.25); // a tick of before, on the way already
    EXPECT_EQ(player.pendingSeekTarget(), 5);
    process(); // the engine's own report of 5 came first
    EXPECT_FALSE(player.pendingSeekTarget());
    EXPECT_FALSE(player.isSeeking());
}

TEST_F(PlayerViewModelTest, AnnouncesTheNextTrackOnceNearTheEnd) {
    engine->loadedDuration = 100;
    for (const bool shuffles : {false, true}) {
        start(2);
        for (const double time : {84.0, 86.0, 90.0}) {
            engine->currentTimeSubject_.send(time);
            process();
            const bool isDue = time > 85 && !shuffles;
            EXPECT_EQ(engine->prepared, std::vector<FileURL>(isDue ? 1 : 0, url(0))) << time;
        }
        engine->prepared.clear();
        player.toggleShuffle();
    }
}

/// An engine that takes a seek and never reports a position near its target.
class DeafEngine : public FakeEngine {
  public:
    void seek(double /*seconds*/) override { calls.emplace_back("seek"); }
};

TEST_F(PlayerViewModelTest, GivesUpASeekThatTheEngineNeverConfirms) {
    auto* deaf = new DeafEngine;
    deaf->loadedDuration = 10;
    PlayerViewModel other{std::unique_ptr<AudioPlaybackEngine>(deaf),
                          {.runAfter = clock.runAfter()}};
    other.play(url(0));
    process();
    for (const auto& [report, confirms] :
         {std::pair(4.94, false), {5.0625, false}, {4.96, true}, {5.04, true}}) {
        other.seek(5);
        deaf->currentTimeSubject_.send(report);
        process();
        EXPECT_EQ(!other.pendingSeekTarget(), confirms) << report;
        EXPECT_EQ(other.currentTime(), confirms ? report : 5) << report;
    }
    deaf->currentTimeSubject_.send(2);
    other.seek(7);
    deaf->calls.clear();
    advance(599ms);
    EXPECT_EQ(other.pendingSeekTarget(), 7);
    advance(1ms);
    EXPECT_FALSE(other.pendingSeekTarget());
    EXPECT_EQ(other.currentTime(), 2);
    EXPECT_THAT(deaf->calls, ElementsAre("pause", "play")); // the sound starts again
    deaf->calls.clear();
    other.attachLibrary(library.get());
    other.seek(10); // to the very end, in vain: the track has ended all the same
    advance(600ms);
    EXPECT_EQ(other.currentURL(), url(1));

    // A seek of the previous playback doesn't touch the next one of the same file, started by a
    // click or by repeating.
    for (const double target : {5.0, 10.0}) {
        other.seek(target);
        deaf->calls.clear();
        other.play(url(1));
        advance(600ms);
        EXPECT_FALSE(other.pendingSeekTarget()) << target;
        EXPECT_THAT(deaf->calls, ElementsAre("stop", load(1), "play")) << target;
        EXPECT_EQ(other.currentURL(), url(1)) << target;
    }
    other.toggleRepeatOne();
    other.seek(5);
    deaf->calls.clear();
    deaf->currentTimeSubject_.send(9.9);
    process();
    advance(600ms);
    EXPECT_FALSE(other.pendingSeekTarget());
    EXPECT_THAT(deaf->calls, ElementsAre("stop", load(1), "play"));
}

TEST_F(PlayerViewModelTest, EndsATrackOnTheReportThatWasSentWhilePlaying) {
    start(2);
    engine->durationSubject_.send(9.95);
    engine->currentTimeSubject_.send(9.95);
    engine->isPlayingSubject_.send(false); // at once, before the report has been handled
    process();
    EXPECT_THAT(engine->calls, ElementsAre("stop", "stop", load(0), "play")); // wraps round
    engine->calls.clear();
    advance(299ms);
    engine->currentTimeSubject_.send(9.9); // still locked
    process();
    EXPECT_THAT(engine->calls, ElementsAre());
    advance(1ms);
    engine->currentTimeSubject_.send(9.9);
    process();
    EXPECT_EQ(player.currentURL(), url(1));
}

TEST_F(PlayerViewModelTest, RepeatsOneTrackWithoutStartingItAnew) {
    player.toggleShuffle();
    player.toggleRepeatOne();
    EXPECT_FALSE(player.shuffleEnabled());
    start(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return player.currentTitle() == u"2"_qs; }));
    advance(300ms);
    QSignalSpy titles(&player, &PlayerViewModel::currentTitleChanged);
    engine->currentTimeSubject_.send(9.9);
    process();
    EXPECT_THAT(engine->calls, ElementsAre("stop"));
    advance(99ms);
    EXPECT_THAT(engine->calls, ElementsAre("stop"));
    advance(1ms);
    EXPECT_THAT(engine->calls, ElementsAre("stop", load(1), "play"));
    EXPECT_EQ(titles.size(), 0);
}

TEST_F(PlayerViewModelTest, StepsThroughTheListThatTheUserSees) {
    start(2);
    library->setSearchText(u"2"_qs); // takes effect at the very next step
    player.next();
    EXPECT_EQ(player.currentURL().lastPathComponent(), "2.mp3");
    player.toggleShuffle();
    const FileURL before = player.currentURL();
    player.next(); // from the whole folder, also from what the list doesn't show
    EXPECT_FALSE(player.currentURL() == before);
    player.toggleShuffle();
    library->setSearchText(u"none"_qs);
    engine->calls.clear();
    player.next();
    EXPECT_THAT(engine->calls, Not(Contains("stop"))); // nothing to play, so it plays on
}

} // namespace
