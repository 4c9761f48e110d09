#include "Platform/MediaPlayer/MediaPlayer.h"
#include "Platform/MediaPlayer/SoundFiles.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>
#include <vector>

namespace tamsy::test {
namespace {

using Status = MediaPlayer::TimeControlStatus;

constexpr SoundFile rawFile{"constant.aac", "-c:a aac -b:a 96k"};
constexpr SoundFile plainFile{"pcm.caf", "-c:a pcm_s16le"};

/// What an observer of everything saw, in order.
struct Sight {
    enum Kind { Time, Duration, Change, End };
    Kind kind;
    double value; // seconds, or the status
    qint64 at;    // milliseconds since the file was opened
    Status status;
};

class Player : public testing::Test {
  protected:
    void open(const QByteArray& path, double interval = 0.25) {
        observers_.clear();
        seen_.clear();
        clock_.start();
        player_ = std::make_unique<MediaPlayer>(thread_, FileURL::fromPath(path));
        observers_.push_back(player_->durationPublisher().subscribe(
            [this](double seconds) { see(Sight::Duration, seconds); }));
        observers_.push_back(player_->addPeriodicTimeObserver(
            interval, [this](double seconds) { see(Sight::Time, seconds); }));
        observers_.push_back(player_->timeControlStatusPublisher().subscribe([this](Status status) {
            status_ = status;
            see(Sight::Change, static_cast<double>(status));
        }));
        observers_.push_back(player_->observePlayedToEnd([this] { see(Sight::End, 0); }));
    }

    void start(const QByteArray& path, double interval = 0.25) {
        open(path, interval);
        player_->play();
        ASSERT_TRUE(waitFor([this] { return status_ == Status::Playing; }));
    }

    void see(Sight::Kind kind, double value) {
        seen_.push_back({kind, value, clock_.elapsed(), status_});
    }

    template <typename Condition>
    [[nodiscard]] static bool waitFor(Condition condition, int milliseconds = 5000) {
        return QTest::qWaitFor(condition, milliseconds);
    }

    [[nodiscard]] double latest(Sight::Kind kind) const {
        const auto found = std::find_if(seen_.rbegin(), seen_.rend(),
                                        [kind](const Sight& sight) { return sight.kind == kind; });
        return found == seen_.rend() ? NAN : found->value;
    }

    /// Waits for a position at least this far.
    [[nodiscard]] bool reaches(double seconds) {
        return waitFor([=, this] { return latest(Sight::Time) >= seconds; });
    }

    MediaPlaybackThread thread_;
    std::unique_ptr<MediaPlayer> player_;
    std::vector<Sight> seen_;
    Status status_ = Status::Paused;
    QElapsedTimer clock_;
    Subscriptions observers_;
};

TEST_F(Player, OpensPausedThenRunsInRealTimeAndHoldsWhilePaused) {
    open(soundFile(plainFile), 0.05);
    ASSERT_TRUE(waitFor([this] { return latest(Sight::Duration) > 0; }));
    EXPECT_NEAR(latest(Sight::Duration), 10, 0.01);
    EXPECT_EQ(latest(Sight::Time), 0);
    EXPECT_EQ(status_, Status::Paused);

    player_->play();
    ASSERT_TRUE(reaches(0.2));
    const Sight early = seen_.back();
    ASSERT_TRUE(reaches(1.2));
    const double passed = static_cast<double>(seen_.back().at - early.at) / 1000;
    EXPECT_LT(seen_.back().value - early.value, passed + 0.1);
    EXPECT_GT(seen_.back().value - early.value, passed * 0.6); // a silent device lags under load

    player_->pause();
    ASSERT_TRUE(waitFor([this] { return status_ == Status::Paused; }));
    const double held = latest(Sight::Time);
    const std::size_t count = seen_.size();
    EXPECT_FALSE(waitFor([&] { return seen_.size() > count; }, 200));
    player_->play();
    ASSERT_TRUE(waitFor([this] { return status_ == Status::Playing; }));
    EXPECT_NEAR(latest(Sight::Time), held, 0.05);
}

TEST_F(Player, ReportsTheTargetOfEachFinishedSeekPausedAndPlaying) {
    open(soundFile(rawFile), 5); // no periodic report will help
    for (const double target : {7.25, 0.0, 9.99}) {
        player_->seek(target);
        EXPECT_TRUE(waitFor([&] { return latest(Sight::Time) == target; })) << target;
    }
    player_->play();
    ASSERT_TRUE(waitFor([this] { return status_ == Status::Playing; }));
    for (const double target : {3.5, 0.0, 5.0}) {
        player_->seek(target);
        EXPECT_TRUE(waitFor([&] { return latest(Sight::Time) == target; })) << target;
        EXPECT_EQ(status_, Status::Playing);
    }
    for (const double odd : {-3.0, double(NAN)}) {
        player_->seek(odd);
        EXPECT_TRUE(waitFor([&] { return latest(Sight::Time) == 0; })) << odd;
    }
    player_->seek(INFINITY);
    EXPECT_TRUE(waitFor([&] { return std::abs(latest(Sight::Time) - 10) < 0.1; }));
}

TEST_F(Player, SurvivesADragThroughAnHour) {
    const QByteArray hour = QByteArray(soundFile(rawFile)).replace("10-constant", "hour");
    ffmpeg("-stream_loop 359 -i 10-constant.aac -c copy hour.aac");
    start(hour, 0.05);
    EXPECT_NEAR(latest(Sight::Duration), 3611, 2);
    std::vector<qint64> costs;
    double target = 0;
    for (int i = 0; i < 200; ++i) {
        target = std::fmod(target + 1234.5, 3590);
        QElapsedTimer cost;
        cost.start();
        player_->seek(target);
        QCoreApplication::processEvents();
        costs.push_back(cost.elapsed());
    }
    std::ranges::sort(costs);
    EXPECT_LE(costs[190], 25);
    ASSERT_TRUE(waitFor([&] { return latest(Sight::Time) == target; }, 20'000));
    EXPECT_TRUE(reaches(target + 0.2));
}

TEST_F(Player, LeavesNothingOfTheLastFileToTheNext) {
    start(soundFile(plainFile), 0.05);
    ASSERT_TRUE(reaches(0.3));
    open(soundFile(rawFile), 0.05);
    EXPECT_EQ(status_, Status::Paused);
    player_->seek(5);
    player_->play();
    ASSERT_TRUE(reaches(5.1));
    for (const Sight& sight : seen_)
        EXPECT_TRUE(sight.kind != Sight::Time || sight.value == 0 || sight.value >= 5);
    player_->dropItem();
    ASSERT_TRUE(waitFor([this] { return status_ == Status::Paused; }));
    const std::size_t count = seen_.size();
    player_->play();
    player_->seek(1);
    EXPECT_FALSE(waitFor([&] { return seen_.size() > count; }, 150));
}

TEST_F(Player, NeverPlaysAFileThatCannotBeOpened) {
    for (const QByteArray& path :
         {QByteArray(), QByteArray("/nowhere.m4a"), fileWith("words.m4a", "words")}) {
        open(path);
        player_->play();
        player_->seek(1);
        EXPECT_FALSE(waitFor([&] { return status_ == Status::Playing; }, 100));
        EXPECT_TRUE(waitFor([&] { return status_ == Status::Paused; }));
        EXPECT_TRUE(std::isnan(latest(Sight::Duration)));
    }
}

TEST_F(Player, EndsWhereAFileIsCutOffWhileItPlays) {
    const QByteArray sound = bytesOf(soundFile(plainFile));
    const QByteArray path = fileWith("shrinking.caf", sound);
    start(path, 0.05);
    ASSERT_EQ(::truncate(path.constData(), sound.size() / 2), 0);
    player_->seek(4.6);
    ASSERT_TRUE(waitFor([this] { return !seen_.empty() && seen_.back().kind == Sight::End; }));
    EXPECT_NEAR(latest(Sight::Duration), 5, 0.1);
    EXPECT_EQ(latest(Sight::Time), latest(Sight::Duration));
}

/// How a listener that is deaf for the first 0.3 seconds learns of the end: a position near the
/// duration while the file plays.
std::optional<Sight> noticedEnd(const std::vector<Sight>& seen) {
    double duration = 0;
    for (const Sight& sight : seen) {
        if (sight.kind == Sight::Duration && std::isfinite(sight.value))
            duration = sight.value;
        if (sight.kind == Sight::Time && sight.status == Status::Playing && sight.at > 300 &&
            duration > 0 && duration - sight.value <= 0.15)
            return sight;
    }
    return std::nullopt;
}

class PlayerEnd : public Player,
                  public testing::WithParamInterface<std::tuple<SoundFile, double, double>> {};

TEST_P(PlayerEnd, IsReportedUntilItCanBeActedOnThenTold) {
    const auto [file, seconds, interval] = GetParam();
    open(soundFile(file, seconds), interval);
    player_->play();
    const auto isOver = [this] { return !seen_.empty() && seen_.back().kind == Sight::End; };
    if (seconds > 1) // far to the right, past the end
        player_->seek(seconds + 0.3);
    ASSERT_TRUE(waitFor(isOver));
    EXPECT_TRUE(noticedEnd(seen_));
    EXPECT_EQ(latest(Sight::Time), latest(Sight::Duration));
    EXPECT_NEAR(latest(Sight::Duration), seconds, 0.1);
    EXPECT_EQ(status_, Status::Paused);

    // Started once more where it stands, it ends once more.
    seen_.clear();
    player_->play();
    ASSERT_TRUE(waitFor(isOver));
    EXPECT_TRUE(std::ranges::any_of(seen_, [](const Sight& sight) {
        return sight.kind == Sight::Time && sight.status == Status::Playing;
    }));
    player_->seek(0);
    EXPECT_TRUE(waitFor([this] { return latest(Sight::Time) == 0; }));
}

INSTANTIATE_TEST_SUITE_P(
    Sound, PlayerEnd,
    testing::Combine(testing::Values(SoundFile{"first.m4a", "-c:a aac -movflags +faststart"},
                                     rawFile),
                     testing::Values(0.1, 0.3, 0.5, 3.0), testing::Values(0.25, 1.2)),
    [](const auto& row) {
        std::string name = std::get<0>(row.param).name;
        name += "_" + std::to_string(std::lround(std::get<1>(row.param) * 1000)) + "_ms_at_" +
                std::to_string(std::lround(std::get<2>(row.param) * 1000));
        std::ranges::replace(name, '.', '_');
        return name;
    });

} // namespace
} // namespace tamsy::test
