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

/// Plays one file on the default output and reports to observers. It lives on the interface thread,
/// calls all observers there, and never waits for disk or device.
///
/// Positions and durations are in seconds. Time observers get a report at their interval while the
/// file plays, and an additional one when it has been opened, starts, is paused, has finished a
/// seek or has reached its end. A finished seek reports its exact target; one that was superseded
/// reports nothing.
///
/// At the end the true duration is published. The end position is reported several times while the
/// status is still playing, at least until 0.6 seconds after loading, since an observer may ignore
/// ends for a moment after a start. Then the status changes to paused and the end observers are
/// called.
class MediaPlayer : public QObject {
    Q_OBJECT
  public:
    /// `Waiting` should play but has no sound: it is about to start, has an underrun or no output.
    enum class TimeControlStatus { Paused = 0, Waiting = 1, Playing = 2 };

    /// Loads the file at `item`, paused at 0, in place of what `thread` played before. A file that
    /// can't be played stays paused, with an unknown duration. `thread` must outlive this.
    MediaPlayer(MediaPlaybackThread& thread, const FileURL& item);
    ~MediaPlayer() override;

    /// The file's duration; NaN while it is unknown. It may be corrected later.
    [[nodiscard]] Publisher<double> durationPublisher() const { return duration_.publisher(); }

    [[nodiscard]] Publisher<TimeControlStatus> timeControlStatusPublisher() const {
        return status_.publisher();
    }

    /// Calls `block` with the position at once, and then every `interval` seconds and as described
    /// above.
    [[nodiscard]] Subscription addPeriodicTimeObserver(double interval,
                                                       std::function<void(double)> block);

    /// Calls `handler` when the file has played to its end.
    [[nodiscard]] Subscription observePlayedToEnd(std::function<void()> handler);

    // Status changes are published later.
    void play();
    void pause();

    /// Unloads the file. After that only the change to paused is reported.
    void dropItem();

    /// Moves the position, at most to the end; negative values and NaN mean the start. The finished
    /// seek reports `seconds` even if the file ends earlier, and then the end.
    void seek(double seconds);

    /// Sets the linear gain, 0 to 1, at once.
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
    std::uint64_t item_; // the thread's number of the file; 0 for none
    ValueSubject<double> duration_;
    ValueSubject<TimeControlStatus> status_{TimeControlStatus::Paused};
    std::vector<std::shared_ptr<TimeObserver>> timeObservers_;
    std::vector<std::shared_ptr<std::function<void()>>> endObservers_;
    bool wantsToPlay_ = false;
    bool hasSound_ = false; // the thread has started it, and it hasn't been paused since
    bool isOpen_ = false;
    bool hasFailed_;
    std::uint64_t latestSeek_ = 0;
    std::uint64_t finishedSeek_ = 0;
    double seekTarget_ = 0;         // seconds
    double anchorPosition_ = 0;     // seconds, at the frame below
    std::uint64_t anchorFrame_ = 0; // a frame's number in the ring buffer
    std::optional<double> endPosition_;
    bool hasRunDry_ = false; // there is an underrun
    QTimer supplyTimer_;     // checks for underruns
    QTimer endTimer_;        // repeats the report of the end
    QElapsedTimer sinceItem_;
    QElapsedTimer sinceEnd_;
};

} // namespace tamsy
