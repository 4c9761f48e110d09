#pragma once

#include "Playback/FFmpeg/MediaPlaybackThread.h"
#include "Utils/ValueSubject.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tamsy {

class FileURL;

/// Plays one file on the default output and tells its observers how it goes. It lives on the
/// interface thread; every observer is called there, and no operation waits for disk or device.
///
/// Positions and lengths are seconds. Observers of time get a report at their interval while the
/// file plays, and one more at once when it has been opened, starts, is paused, has finished a seek
/// or has reached its end. A finished seek reports its exact target; one that was overtaken by the
/// next reports nothing.
///
/// At the end the true length is published as the duration, and the end is reported as a position
/// that still plays, more than once and at least until 0.6 seconds after the file was taken on, so
/// that an observer which is deaf for a moment after each start still learns of it. Then the
/// status turns to paused and the end's observers are called.
class MediaPlayer : public QObject {
    Q_OBJECT
  public:
    /// `Waiting` is meant to play but has no sound yet, or none for the moment.
    enum class TimeControlStatus { Paused = 0, Waiting = 1, Playing = 2 };

    /// Takes on the file at `item`, paused at 0, in place of whatever `thread` played before. A
    /// file that can't be played stays paused, its duration unknown.
    MediaPlayer(MediaPlaybackThread& thread, const FileURL& item);
    ~MediaPlayer() override;

    /// The file's length; NaN while it is unknown. It may be corrected on the way.
    [[nodiscard]] Publisher<double> durationPublisher() const { return duration_.publisher(); }

    [[nodiscard]] Publisher<TimeControlStatus> timeControlStatusPublisher() const {
        return status_.publisher();
    }

    /// Calls `block` with the position, at once and then as told above, every `interval` seconds.
    [[nodiscard]] Subscription addPeriodicTimeObserver(double interval,
                                                       std::function<void(double)> block);

    /// Calls `handler` when the file has been played to its end.
    [[nodiscard]] Subscription observePlayedToEnd(std::function<void()> handler);

    // A change of the status comes back through its publisher, later.
    void play();
    void pause();

    /// Frees the file. Nothing more is reported but the change to paused.
    void dropItem();

    /// Moves the position, at most to the end; negative and NaN mean the start. The finished seek
    /// reports `seconds` even where the file ends before it, then the end itself.
    void seek(double seconds);

    /// Linear, 0 to 1; in effect at once.
    void setVolume(float volume);

  private:
    struct TimeObserver;

    void handle(const PlaybackReport& report);
    void finishSeek(const PlaybackReport& report);
    void reachEnd(double length);
    void repeatEnd();
    void leaveEnd();
    void runTimers(bool running);
    void watchSupply();
    void settleStatusSoon();
    void settleStatus();
    void reportTime(double seconds);
    [[nodiscard]] double position() const;

    MediaPlaybackThread& thread_;
    std::uint64_t item_; // the thread's number of the file, 0 for none
    ValueSubject<double> duration_;
    ValueSubject<TimeControlStatus> status_{TimeControlStatus::Paused};
    std::vector<std::shared_ptr<TimeObserver>> timeObservers_;
    std::vector<std::shared_ptr<std::function<void()>>> endObservers_;
    bool wantsToPlay_ = false;
    bool hasSound_ = false; // the thread has started it and it hasn't been held since
    bool isOpen_ = false;
    bool hasFailed_;
    std::uint64_t latestSeek_ = 0;
    std::uint64_t finishedSeek_ = 0;
    double seekTarget_ = 0;         // seconds
    double anchorPosition_ = 0;     // seconds, at the frame below
    std::uint64_t anchorFrame_ = 0; // the ring's number of a frame
    std::optional<double> endPosition_;
    bool hasRunDry_ = false; // it had sound until the file became too slow
    QTimer supplyTimer_;     // looks after a file that plays
    QTimer endTimer_;        // repeats the report of the end
    QElapsedTimer sinceItem_;
    QElapsedTimer sinceEnd_;
};

} // namespace tamsy
