#include "Playback/FFmpeg/MediaPlayer.h"
#include "Playback/SoundFiles.h"
#include "Playback/TestAudio.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <unistd.h>

#include <algorithm>
#include <cmath>
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
    Status status;
};

class Player : public testing::Test {
  protected:
    void open(const QByteArray& path, double interval = 0.25) {
        observers_.clear();
        seen_.clear();
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
        ASSERT_TRUE(waitUntil([this] { return status_ == Status::Playing; }));
    }

    void see(Sight::Kind kind, double value) { seen_.push_back({kind, value, status_}); }

    [[nodiscard]] double latest(Sight::Kind kind) const {
        const auto found = std::find_if(seen_.rbegin(), seen_.rend(),
                                        [kind](const Sight& sight) { return sight.kind == kind; });
        return found == seen_.rend() ? NAN : found->value;
    }

    /// Waits for a position at least this far.
    [[nodiscard]] bool reaches(double seconds) {
        return waitUntil([=, this] { return latest(Sight::Time) >= seconds; });
    }

    MediaPlaybackThread thread_;
    std::unique_ptr<MediaPlayer> player_;
    std::vector<Sight> seen_;
    Status status_ = Status::Paused;
    Subscriptions observers_;
};

TEST_F(Player, SurvivesADragThroughAnHour) {
    const QByteArray hour = QByteArray(soundFile(rawFile)).replace("10-constant", "hour");
    ffmpeg("-stream_loop 359 -i 10-constant.aac -c copy hour.aac");
    start(hour, 0.05);
    // At first it may be an estimate.
    EXPECT_TRUE(waitUntil([&] { return std::abs(latest(Sight::Duration) - 3611) < 2; }));
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
    ASSERT_TRUE(waitUntil([&] { return latest(Sight::Time) == target; }, 20'000));
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
}

TEST_F(Player, EndsWhereAFileIsCutOffWhileItPlays) {
    const QByteArray sound = bytesOf(soundFile(plainFile));
    const QByteArray path = fileWith("shrinking.caf", sound);
    start(path, 0.05);
    ASSERT_EQ(::truncate(path.constData(), sound.size() / 2), 0);
    player_->seek(4.6);
    ASSERT_TRUE(waitUntil([this] { return !seen_.empty() && seen_.back().kind == Sight::End; }));
    EXPECT_NEAR(latest(Sight::Duration), 5, 0.1);
    EXPECT_EQ(latest(Sight::Time), latest(Sight::Duration));
}

TEST_F(Player, EndsAtItsDurationAndOnceMoreWhenItIsStartedThere) {
    open(soundFile(rawFile, 3));
    player_->play();
    player_->seek(3.3); // far to the right, past the end
    const auto isOver = [this] { return !seen_.empty() && seen_.back().kind == Sight::End; };
    ASSERT_TRUE(waitUntil(isOver));
    EXPECT_EQ(latest(Sight::Time), latest(Sight::Duration));
    EXPECT_NEAR(latest(Sight::Duration), 3, 0.1);
    EXPECT_EQ(status_, Status::Paused);

    seen_.clear();
    player_->play();
    ASSERT_TRUE(waitUntil(isOver));
    EXPECT_TRUE(std::ranges::any_of(seen_, [](const Sight& sight) {
        return sight.kind == Sight::Time && sight.status == Status::Playing;
    }));
}

} // namespace
} // namespace tamsy::test
