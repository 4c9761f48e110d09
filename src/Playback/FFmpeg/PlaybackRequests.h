#pragma once

#include "Playback/Output/OutputKeeper.h"

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace tamsy {

/// All that the interface thread wants of the playback thread. It is a state, not a queue: what was
/// overtaken before its turn came is never carried out, so of a slider's seeks the last one wins.
struct PlaybackRequest {
    std::uint64_t item = 0; // number of the file to hold, 0 for none
    QByteArray path;        // its name in bytes
    std::uint64_t run = 0;  // counts the starts of this item
    bool running = false;
    std::uint64_t seek = 0; // counts the seeks of this item
    double seekTarget = 0;  // seconds
    bool quit = false;
};

/// The request between the interface thread, which changes it, and the playback thread, which waits
/// for a change. Holding back the sound takes effect at once, whatever the playback thread does.
class PlaybackRequests {
  public:
    using Clock = std::chrono::steady_clock;

    explicit PlaybackRequests(OutputKeeper& output) : output_(output) {}

    // Interface thread.

    /// Drops the item and its sound, and holds the file at `path` instead. Gives its number.
    std::uint64_t setItem(const QByteArray& path);

    // These do nothing if `item` isn't the current one any more.
    void dropItem(std::uint64_t item);
    void setRunning(std::uint64_t item, bool running);
    void seek(std::uint64_t item, std::uint64_t number, double seconds);
    void quit();

    /// Wants what `stuck` wanted, whose playback thread doesn't answer, and lets that thread end.
    void takeOver(PlaybackRequests& stuck);

    /// Whether the playback thread has seen the latest change.
    [[nodiscard]] bool isTaken() const;

    // Playback thread.

    /// Waits until something has changed since the last call, at most until `deadline`.
    [[nodiscard]] PlaybackRequest wait(Clock::time_point deadline);

    /// Lets the sound out if `request` still holds; true if it does.
    [[nodiscard]] bool letRun(const PlaybackRequest& request);

    /// True while the file that the playback thread works on isn't wanted any more.
    [[nodiscard]] const std::atomic<bool>& abandoned() const { return abandoned_; }

  private:
    template <typename Change>
    void change(Change change);
    void replaceItem(const QByteArray& path);

    OutputKeeper& output_;
    mutable std::mutex mutex_; // guards what follows, and the start of the output
    std::condition_variable changed_;
    PlaybackRequest request_;
    bool isChanged_ = false;
    std::atomic<bool> abandoned_ = false;
};

} // namespace tamsy
