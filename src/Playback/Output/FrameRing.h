#pragma once

#include "Playback/Resampling/StereoFrame.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tamsy {

/// A lock-free ring buffer of frames from one producer thread to one consumer thread.
///
/// Frames are numbered from construction on. Only the consumer moves the read position, so
/// `discardUnread` only marks frames. The space above `fillTarget` is for the frames after them,
/// which are thus available as soon as the consumer drops the discarded ones.
///
/// If the consumer finds too few frames and the producer hasn't marked the end, that is an
/// underrun: it then gets none until there are enough to start again, so that a slow producer
/// doesn't cause stutter.
class FrameRing {
  public:
    // In frames. Once filled, it covers a file that doesn't respond for three seconds.
    // Filling in bursts lets the producer sleep for a second and a half at a time.
    static constexpr std::uint64_t capacity = 288'000;    // 6 s
    static constexpr std::uint64_t fillTarget = 264'000;  // 5.5 s
    static constexpr std::uint64_t refillLevel = 192'000; // 4 s
    static constexpr std::uint64_t startFrames = 12'000;  // as many as a device takes at once

    /// Frames written so far. Producer.
    [[nodiscard]] std::uint64_t written() const;

    /// Frames not yet read, without discarded ones. Producer.
    [[nodiscard]] std::uint64_t unread() const;

    /// Writes as many of `frames` as fit and returns their number. Producer.
    std::size_t write(std::span<const StereoFrame> frames);

    /// Marks the end: nothing follows until the next `discardUnread`. Producer.
    void markEnd();

    /// Discards everything written but not yet read. Producer.
    void discardUnread();

    /// Reads into `out` and returns the number of frames. Consumer.
    std::size_t read(std::span<StereoFrame> out);

    /// Whether everything before the marked end has been read. Consumer.
    [[nodiscard]] bool isAtEnd() const;

    /// Drops discarded frames. Consumer, or the producer while there is no consumer.
    void skipDiscarded();

    /// Drops everything written so far. Consumer.
    void skipWritten();

    /// The number of the next frame to play. Any thread.
    [[nodiscard]] std::uint64_t consumed() const;

    /// How many frames have been requested after the end. Any thread.
    [[nodiscard]] std::uint64_t readPastEnd() const {
        return readPastEnd_.load(std::memory_order_relaxed);
    }

    /// Whether the last `read` found too few frames. Any thread.
    [[nodiscard]] bool hasRunDry() const { return hasRunDry_.load(std::memory_order_acquire); }

    /// Whether there are enough frames to start, or all up to the end. Any thread.
    [[nodiscard]] bool canStart() const;

  private:
    static constexpr std::uint64_t noEnd = UINT64_MAX;

    std::array<StereoFrame, capacity> frames_{};
    alignas(64) std::atomic<std::uint64_t> written_ = 0;
    std::atomic<std::uint64_t> discardedUpTo_ = 0;
    std::atomic<std::uint64_t> end_ = noEnd; // one past the last frame
    alignas(64) std::atomic<std::uint64_t> consumed_ = 0;
    std::atomic<std::uint64_t> readPastEnd_ = 0;
    std::atomic<bool> hasRunDry_ = false;
};

} // namespace tamsy
