#include "Platform/Threads/ReadPriority.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <thread>

namespace tamsy {
namespace {

using Clock = std::chrono::steady_clock;

/// Longer than a decoder takes between two consecutive reads.
constexpr std::chrono::milliseconds pauseBetweenReads{30};

// For all file systems together: which one a file is on isn't known until it is open, and opening
// is the slow part.
std::array<std::atomic<Clock::rep>, 64> starts; // of the reads under way; 0 is a free slot
std::atomic<Clock::rep> lastEnd{0};
thread_local bool isYielding = false;

bool isWithin(Clock::duration limit, const std::atomic<Clock::rep>& time) {
    const Clock::time_point point{Clock::duration(time.load(std::memory_order_relaxed))};
    return Clock::now() - point < limit;
}

/// A read that takes longer than the limit hangs in a file that doesn't respond.
bool isMusicReading() {
    return isWithin(pauseBetweenReads, lastEnd) ||
           std::ranges::any_of(
               starts, [](const auto& start) { return isWithin(YieldingReads::maxWait, start); });
}

Clock::rep now() {
    return Clock::now().time_since_epoch().count();
}

} // namespace

MusicRead::MusicRead() {
    const Clock::rep start = now();
    start_ = std::ranges::find_if(starts,
                                  [start](auto& free) {
                                      Clock::rep expected = 0;
                                      return free.compare_exchange_strong(
                                          expected, start, std::memory_order_relaxed);
                                  }) -
             starts.begin();
}

MusicRead::~MusicRead() {
    lastEnd.store(now(), std::memory_order_relaxed);
    if (start_ < std::ssize(starts))
        starts[static_cast<std::size_t>(start_)].store(0, std::memory_order_relaxed);
}

YieldingReads::YieldingReads() {
    isYielding = true;
}

YieldingReads::~YieldingReads() {
    isYielding = false;
}

std::size_t YieldingReads::waitForMusic(std::size_t wanted) {
    if (!isYielding)
        return wanted;
    constexpr std::chrono::milliseconds step{10};
    const auto limit = Clock::now() + maxWait;
    while (isMusicReading() && Clock::now() < limit)
        std::this_thread::sleep_for(step);
    return std::min(wanted, maxReadSize);
}

} // namespace tamsy
