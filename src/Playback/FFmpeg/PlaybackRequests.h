#pragma once

#include "Playback/Output/OutputKeeper.h"

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace tamsy {

/// What the interface thread wants from the playback thread. It is a state and not a queue:
/// superseded requests are skipped, so of a slider's seeks the last one wins.
struct PlaybackRequest {
    std::uint64_t item = 0; // the file's number; 0 for none
    QByteArray path;        // in bytes
    std::uint64_t run = 0;  // counts the starts of this item
    bool running = false;
    std::uint64_t seek = 0; // counts the seeks of this item
    double seekTarget = 0;  // seconds
    QByteArray next;        // the path of the next file, in bytes, if it is known
    bool quit = false;
};

/// Passes requests from the interface thread to the playback thread. Pausing takes effect at once,
/// whatever the playback thread does.
class PlaybackRequests {
  public:
    using Clock = std::chrono::steady_clock;

    explicit PlaybackRequests(OutputKeeper& output) : output_(output) {}

    // Interface thread.

    /// Replaces the item, and its sound, by the file at `path`. Returns its number.
    std::uint64_t setItem(const QByteArray& path);

    /// Announces the file that is likely to be the next item.
    void prepare(const QByteArray& path);

    // These do nothing if `item` isn't current.
    void dropItem(std::uint64_t item);
    void setRunning(std::uint64_t item, bool running);
    void seek(std::uint64_t item, std::uint64_t number, double seconds);
    void quit();

    /// Takes over the request of `stuck`, whose playback thread doesn't respond, and makes that
    /// thread end.
    void takeOver(PlaybackRequests& stuck);

    /// Whether the playback thread has taken the latest item.
    [[nodiscard]] bool isTaken() const;

    // Playback thread.

    /// Waits for a change since the last call, at most until `deadline`.
    [[nodiscard]] PlaybackRequest wait(Clock::time_point deadline);

    /// Starts the sound if `request` is still current; returns whether it is.
    [[nodiscard]] bool letRun(const PlaybackRequest& request);

    /// True if the playback thread's current file is no longer wanted.
    [[nodiscard]] const std::atomic<bool>& abandoned() const { return abandoned_; }

  private:
    template <typename Change>
    void change(Change change);
    void replaceItem(const QByteArray& path);

    OutputKeeper& output_;
    mutable std::mutex mutex_; // guards everything below, and the start of the output
    std::condition_variable changed_;
    PlaybackRequest request_;
    std::uint64_t takenItem_ = 0;
    bool isChanged_ = false;
    std::atomic<bool> abandoned_ = false;
};

} // namespace tamsy
