#pragma once

#include "Playback/Resampling/StereoFrame.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tamsy {

/// Frames on their way from one producer thread to one consumer thread, without a lock.
///
/// Frames are numbered from the ring's making on. Only the consumer moves the read mark; the
/// producer asks it to by `discardUnread`, and the room above `fillTarget` takes the frames that
/// follow at once, so that what is new is there when the consumer lets go of what is old.
///
/// A consumer that finds too few frames has run dry, unless the producer has marked the end. It
/// then gets none until there are enough to start with, so that a slow producer doesn't make it
/// stutter.
class FrameRing {
  public:
    // In frames. A file may be silent for three seconds and more before the sound breaks; filling
    // in bursts lets the producer's thread sleep for a second and a half at a time.
    static constexpr std::uint64_t capacity = 288'000;    // 6 s
    static constexpr std::uint64_t fillTarget = 264'000;  // 5.5 s
    static constexpr std::uint64_t refillLevel = 192'000; // 4 s
    static constexpr std::uint64_t startFrames = 12'000;  // as much as a device takes at once

    /// Frames written so far. Producer.
    [[nodiscard]] std::uint64_t written() const;

    /// Frames that are still to be played, without discarded ones. Producer.
    [[nodiscard]] std::uint64_t unread() const;

    /// Takes as many of `frames` as there is room for and gives their number. Producer.
    std::size_t write(std::span<const StereoFrame> frames);

    /// Nothing follows what has been written, until the next `discardUnread`. Producer.
    void markEnd();

    /// Everything written so far will not be played. Producer.
    void discardUnread();

    /// Fills the front of `out` and gives the number of frames. Consumer.
    std::size_t read(std::span<StereoFrame> out);

    /// Whether everything up to the marked end has been read. Consumer.
    [[nodiscard]] bool isAtEnd() const;

    /// Lets go of discarded frames without reading. Consumer, or the producer while there is none.
    void skipDiscarded();

    /// Lets go of everything written so far. Consumer.
    void skipWritten();

    /// The number of the frame that is played next. Any thread.
    [[nodiscard]] std::uint64_t consumed() const;

    /// Whether the last `read` found too few frames. Any thread.
    [[nodiscard]] bool hasRunDry() const { return hasRunDry_.load(std::memory_order_acquire); }

    /// Whether there are enough frames to start with, or all that will come. Any thread.
    [[nodiscard]] bool canStart() const;

  private:
    static constexpr std::uint64_t noEnd = UINT64_MAX;

    std::array<StereoFrame, capacity> frames_{};
    alignas(64) std::atomic<std::uint64_t> written_ = 0;
    std::atomic<std::uint64_t> discardedUpTo_ = 0;
    std::atomic<std::uint64_t> end_ = noEnd; // the number after the last frame's
    alignas(64) std::atomic<std::uint64_t> consumed_ = 0;
    std::atomic<bool> hasRunDry_ = false;
};

} // namespace tamsy
