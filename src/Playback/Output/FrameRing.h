#pragma once

#include "Platform/Resampling/StereoFrame.h"

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
class FrameRing {
  public:
    static constexpr std::uint64_t capacity = 32'768; // frames, a power of two for the wrap-around
    static constexpr std::uint64_t fillTarget = 24'000; // frames: half a second never ran dry

    /// Frames written so far. Producer.
    [[nodiscard]] std::uint64_t written() const;

    /// Frames that are still to be played, without discarded ones. Producer.
    [[nodiscard]] std::uint64_t unread() const;

    /// Takes as many of `frames` as there is room for and gives their number. Producer.
    std::size_t write(std::span<const StereoFrame> frames);

    /// Everything written so far will not be played. Producer.
    void discardUnread();

    /// Fills the front of `out` and gives the number of frames. Consumer.
    std::size_t read(std::span<StereoFrame> out);

    /// Lets go of discarded frames without reading. Consumer, or the producer while there is none.
    void skipDiscarded();

    /// The number of the frame that is played next. Any thread.
    [[nodiscard]] std::uint64_t consumed() const;

  private:
    std::array<StereoFrame, capacity> frames_{};
    alignas(64) std::atomic<std::uint64_t> written_ = 0;
    std::atomic<std::uint64_t> discardedUpTo_ = 0;
    alignas(64) std::atomic<std::uint64_t> consumed_ = 0;
};

} // namespace tamsy
