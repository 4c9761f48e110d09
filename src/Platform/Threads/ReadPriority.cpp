#include "Platform/Threads/ReadPriority.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <thread>

namespace tamsy {
namespace {

using Clock = std::chrono::steady_clock;

/// Longer than a decoder takes between two consecutive reads.
constexpr std::chrono::milliseconds pauseBetweenReads{30};

struct DeviceReads {
    std::atomic<int> active{0};
    std::atomic<Clock::rep> lastEnd{0};
};

/// Devices that share an entry yield to each other's music, which does no harm.
std::array<DeviceReads, 64> allReads;
thread_local bool isYielding = false;

DeviceReads& readsOf(dev_t device) {
    return allReads[device % allReads.size()];
}

bool isMusicReading(const DeviceReads& reads) {
    const Clock::time_point lastEnd{Clock::duration(reads.lastEnd.load(std::memory_order_relaxed))};
    return reads.active.load(std::memory_order_relaxed) > 0 ||
           Clock::now() - lastEnd < pauseBetweenReads;
}

} // namespace

MusicRead::MusicRead(dev_t device) : device_(device) {
    readsOf(device_).active.fetch_add(1, std::memory_order_relaxed);
}

MusicRead::~MusicRead() {
    DeviceReads& reads = readsOf(device_);
    reads.lastEnd.store(Clock::now().time_since_epoch().count(), std::memory_order_relaxed);
    reads.active.fetch_sub(1, std::memory_order_relaxed);
}

YieldingReads::YieldingReads() {
    isYielding = true;
}

YieldingReads::~YieldingReads() {
    isYielding = false;
}

std::size_t YieldingReads::waitForMusic(dev_t device, std::size_t wanted) {
    if (!isYielding)
        return wanted;
    constexpr std::chrono::milliseconds step{10};
    const DeviceReads& reads = readsOf(device);
    const auto limit = Clock::now() + maxWait;
    while (isMusicReading(reads) && Clock::now() < limit)
        std::this_thread::sleep_for(step);
    return std::min(wanted, maxReadSize);
}

} // namespace tamsy
