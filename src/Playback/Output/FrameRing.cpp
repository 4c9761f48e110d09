#include "Playback/Output/FrameRing.h"

#include <algorithm>

namespace tamsy {

std::uint64_t FrameRing::written() const {
    return written_.load(std::memory_order_relaxed);
}

std::uint64_t FrameRing::unread() const {
    const std::uint64_t discarded = discardedUpTo_.load(std::memory_order_relaxed);
    return written() - std::max(consumed(), discarded);
}

std::size_t FrameRing::write(std::span<const StereoFrame> frames) {
    const std::uint64_t start = written();
    const std::uint64_t space = capacity - (start - consumed());
    const std::size_t count = std::min<std::size_t>(frames.size(), space);
    const std::size_t offset = start % capacity;
    const std::size_t untilWrap = std::min<std::size_t>(count, capacity - offset);
    std::ranges::copy(frames.first(untilWrap), frames_.data() + offset);
    std::ranges::copy(frames.first(count).subspan(untilWrap), frames_.data());
    written_.store(start + count, std::memory_order_release);
    return count;
}

void FrameRing::markEnd() {
    end_.store(written(), std::memory_order_release);
}

void FrameRing::discardUnread() {
    end_.store(noEnd, std::memory_order_release);
    discardedUpTo_.store(written(), std::memory_order_release);
}

std::size_t FrameRing::read(std::span<StereoFrame> out) {
    skipDiscarded();
    const std::uint64_t start = consumed_.load(std::memory_order_relaxed);
    // Read before the frames, so that the end is never seen without them.
    const std::uint64_t end = end_.load(std::memory_order_acquire);
    const std::uint64_t available = written_.load(std::memory_order_acquire) - start;
    const bool isAll = start + available == end;
    if (hasRunDry() && available < startFrames && !isAll)
        return 0;
    const std::size_t count = std::min<std::size_t>(out.size(), available);
    readPastEnd_.store(isAll ? readPastEnd() + out.size() - count : 0, std::memory_order_relaxed);
    hasRunDry_.store(count < out.size() && !isAll, std::memory_order_release);
    const std::span<const StereoFrame> all(frames_);
    const std::size_t offset = start % capacity;
    const std::size_t untilWrap = std::min<std::size_t>(count, capacity - offset);
    std::ranges::copy(all.subspan(offset, untilWrap), out.begin());
    std::ranges::copy(all.first(count - untilWrap), out.data() + untilWrap);
    consumed_.store(start + count, std::memory_order_release);
    return count;
}

bool FrameRing::isAtEnd() const {
    return end_.load(std::memory_order_acquire) == consumed();
}

void FrameRing::skipWritten() {
    consumed_.store(written_.load(std::memory_order_acquire), std::memory_order_release);
}

bool FrameRing::canStart() const {
    const std::uint64_t end = end_.load(std::memory_order_acquire);
    const std::uint64_t frames = written_.load(std::memory_order_acquire);
    const std::uint64_t discarded = discardedUpTo_.load(std::memory_order_acquire);
    return frames == end || frames - std::max(consumed(), discarded) >= startFrames;
}

void FrameRing::skipDiscarded() {
    const std::uint64_t discarded = discardedUpTo_.load(std::memory_order_acquire);
    if (consumed_.load(std::memory_order_relaxed) < discarded)
        consumed_.store(discarded, std::memory_order_release);
}

std::uint64_t FrameRing::consumed() const {
    return consumed_.load(std::memory_order_acquire);
}

} // namespace tamsy
