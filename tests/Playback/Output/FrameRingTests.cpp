#include "Playback/Output/FrameRing.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <thread>
#include <vector>

namespace tamsy::test {
namespace {

TEST(FrameRing, HandsOverEveryFrameInOrderAndNoneThatWasDiscarded) {
    const auto ring = std::make_unique<FrameRing>();
    constexpr int rounds = 3000, roundsUntilDiscard = 100;
    const auto sizeOf = [](int round) { return static_cast<std::size_t>(1 + round * 37 % 3000); };
    std::set<float> firstKept;
    float total = 0;
    for (int round = 0; round < rounds; ++round) {
        total += static_cast<float>(sizeOf(round));
        if (round % roundsUntilDiscard == roundsUntilDiscard - 1)
            firstKept.insert(total);
    }
    std::atomic<float> discardedBefore = 0;
    std::atomic<bool> done = false;
    std::thread consumer([&] {
        std::vector<StereoFrame> out(1000);
        float last = -1;
        while (true) {
            const bool isLast = done;
            const float floor = discardedBefore;
            const std::size_t count = ring->read(out);
            for (const StereoFrame& frame : std::span(out).first(count)) {
                ASSERT_GE(frame.left, floor);
                ASSERT_TRUE(frame.left == last + 1 || firstKept.contains(frame.left));
                last = frame.left;
            }
            if (isLast && count == 0)
                return;
        }
    });
    std::vector<StereoFrame> block;
    float next = 0;
    for (int round = 0; round < rounds; ++round) {
        block.resize(sizeOf(round));
        for (StereoFrame& frame : block)
            frame = {next, next}, ++next;
        for (std::span<const StereoFrame> rest = block; !rest.empty();)
            rest = rest.subspan(ring->write(rest));
        if (firstKept.contains(next)) {
            ring->discardUnread();
            EXPECT_EQ(ring->unread(), 0U);
            discardedBefore = next;
        }
    }
    done = true;
    consumer.join();
    EXPECT_EQ(ring->consumed(), ring->written());
}

} // namespace
} // namespace tamsy::test
