#include "Playback/FakeEngine.h"
#include "ViewModels/LibraryFixture.h"
#include "ViewModels/PlayerViewModel.h"

#include <QSignalSpy>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

using namespace tamsy;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

/// A player on an engine without sound, over a folder of three files.
class PlayerViewModelTest : public testing::Test, protected LibraryFixture {
  protected:
    PlayerViewModelTest() {
        engine->loadedDuration = 10;
        process();
    }

    void SetUp() override {
        add(QStringLiteral("m"), {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")});
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

    FakeEngine* engine = new FakeEngine; // the player owns it
    PlayerViewModel player{std::unique_ptr<AudioPlaybackEngine>(engine)};
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
    ASSERT_TRUE(QTest::qWaitFor([&] { return player.currentTitle() == QStringLiteral("3"); }));
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

/// An engine that takes a seek and never reports a position near its target.
class DeafEngine : public FakeEngine {
  public:
    void seek(double /*seconds*/) override { calls.emplace_back("seek"); }
};

TEST_F(PlayerViewModelTest, GivesUpASeekThatTheEngineNeverConfirms) {
    auto* deaf = new DeafEngine;
    deaf->loadedDuration = 10;
    PlayerViewModel other{std::unique_ptr<AudioPlaybackEngine>(deaf)};
    other.play(url(0));
    process();
    struct Row {
        double report;
        bool confirms;
    };
    for (const Row& row :
         {Row{4.94, false}, Row{5.0625, false}, Row{4.96, true}, Row{5.04, true}}) {
        other.seek(5);
        deaf->currentTimeSubject_.send(row.report);
        process();
        EXPECT_EQ(!other.pendingSeekTarget(), row.confirms) << row.report;
        EXPECT_EQ(other.currentTime(), row.confirms ? row.report : 5) << row.report;
    }
    deaf->currentTimeSubject_.send(2);
    other.seek(7);
    deaf->calls.clear();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return !other.pendingSeekTarget() && other.currentTime() == 2; }, 2000));
    EXPECT_THAT(deaf->calls, ElementsAre("pause", "play")); // the sound starts again
    deaf->calls.clear();
    other.attachLibrary(library.get());
    ASSERT_TRUE(QTest::qWaitFor([&] { return other.currentTime() == 2; }));
    other.seek(10); // to the very end, in vain: the track has ended all the same
    EXPECT_TRUE(QTest::qWaitFor([&] { return other.currentURL() == url(1); }, 2000));

    // The same file anew, by a click and by repeating: no seek of the playback before concerns it.
    const auto givesUpQuietly = [&](const std::vector<std::string>& calls) {
        return QTest::qWaitFor([&] { return !other.pendingSeekTarget(); }, 2000) &&
               deaf->calls == calls;
    };
    for (const double target : {5.0, 10.0}) {
        other.seek(target);
        deaf->calls.clear();
        other.play(url(1));
        EXPECT_TRUE(givesUpQuietly({"stop", load(1), "play"})) << target;
        EXPECT_EQ(other.currentURL(), url(1)) << target;
    }
    other.toggleRepeatOne();
    other.seek(5);
    deaf->calls.clear();
    deaf->currentTimeSubject_.send(9.9);
    EXPECT_TRUE(givesUpQuietly({"stop", load(1), "play"}));
}

TEST_F(PlayerViewModelTest, EndsATrackOnTheReportThatWasSentWhilePlaying) {
    start(2);
    QTest::qWait(320); // the lock of the start is released
    engine->durationSubject_.send(9.95);
    engine->currentTimeSubject_.send(9.95);
    engine->isPlayingSubject_.send(false); // at once, before the report has been handled
    process();
    EXPECT_THAT(engine->calls, ElementsAre("stop", "stop", load(0), "play")); // wraps round
    engine->calls.clear();
    engine->currentTimeSubject_.send(9.9); // within the lock
    process();
    EXPECT_THAT(engine->calls, ElementsAre());
    EXPECT_TRUE(QTest::qWaitFor([&] {
        engine->currentTimeSubject_.send(9.9); // the engine goes on reporting its end
        return player.currentURL() == url(1);
    }));
}

TEST_F(PlayerViewModelTest, RepeatsOneTrackWithoutStartingItAnew) {
    player.toggleShuffle();
    player.toggleRepeatOne();
    EXPECT_FALSE(player.shuffleEnabled());
    start(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return player.currentTitle() == QStringLiteral("2"); }));
    QTest::qWait(320);
    QSignalSpy titles(&player, &PlayerViewModel::currentTitleChanged);
    engine->currentTimeSubject_.send(9.9);
    process();
    EXPECT_THAT(engine->calls, ElementsAre("stop"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return engine->calls.size() == 3; }));
    EXPECT_THAT(engine->calls, ElementsAre("stop", load(1), "play"));
    EXPECT_EQ(titles.size(), 0);
}

TEST_F(PlayerViewModelTest, StepsThroughTheListThatTheUserSees) {
    start(2);
    library->setSearchText(QStringLiteral("2")); // takes effect at the very next step
    player.next();
    EXPECT_EQ(player.currentURL().lastPathComponent(), "2.mp3");
    player.toggleShuffle();
    const FileURL before = player.currentURL();
    player.next(); // from the whole folder, also from what the list doesn't show
    EXPECT_FALSE(player.currentURL() == before);
    player.toggleShuffle();
    library->setSearchText(QStringLiteral("none"));
    engine->calls.clear();
    player.next();
    EXPECT_THAT(engine->calls, Not(Contains("stop"))); // nothing to play, so it plays on
}

} // namespace
