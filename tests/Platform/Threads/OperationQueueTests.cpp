#include "Platform/Threads/OperationQueue.h"
#include "Platform/Threads/ReadPriority.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <latch>
#include <memory>
#include <string>
#include <vector>

using namespace tamsy;

namespace {

TEST(OperationQueueTest, RunsInOrderAndNeverMoreThanItsLimit) {
    for (const int limit : {1, 3}) {
        std::mutex mutex;
        std::vector<int> order;
        std::atomic<int> running = 0;
        std::atomic<int> most = 0;
        std::latch finished(100);
        OperationQueue queue(static_cast<std::size_t>(limit));
        for (int number = 0; number < 100; ++number) {
            auto operation = std::make_shared<Operation>([&, number] {
                const int now = ++running;
                const std::scoped_lock lock(mutex);
                most = std::max(most.load(), now);
                order.push_back(number);
                --running;
            });
            operation->setCompletionHook([&] { finished.count_down(); });
            queue.add(std::move(operation));
        }
        finished.wait();
        EXPECT_LE(most, limit);
        // Of several at once, one that the system lets wait is overtaken.
        EXPECT_TRUE(limit > 1 || std::is_sorted(order.begin(), order.end()));
        EXPECT_EQ(order.size(), 100U);
    }
}

TEST(OperationQueueTest, CancelledBeforeItsStartNeverRunsYetItsHookDoes) {
    std::vector<std::string> log; // of the queue's one thread
    std::latch begun(1);
    std::latch cancelled(1);
    OperationQueue queue(1);
    const auto add = [&](const std::string& name, std::function<void()> work) {
        auto operation = std::make_shared<Operation>([&log, name, work = std::move(work)] {
            work();
            log.push_back(name);
        });
        operation->setCompletionHook([&log, name] { log.push_back(name + " over"); });
        queue.add(operation);
        return operation;
    };
    const auto first = add("first", [&] {
        begun.count_down();
        cancelled.wait();
    });
    const auto second = add("second", [] {});
    std::latch third(1);
    add("third", [&] { third.count_down(); });
    begun.wait();
    first->cancel(); // runs already, so it goes on
    second->cancel();
    second->cancel();
    cancelled.count_down();
    third.wait();
    queue.end();
    add("late", [] {});
    queue.end();
    EXPECT_THAT(log, testing::ElementsAre("first", "first over", "second over", "third",
                                          "third over", "late over"));
}

TEST(OperationQueueTest, ItsEndWaitsForWhatRunsAndCancelsTheRest) {
    std::atomic<int> ran = 0;
    std::atomic<int> over = 0;
    std::latch begun(2);
    std::latch goOn(1);
    std::thread releaser;
    {
        OperationQueue queue(2);
        for (int number = 0; number < 10; ++number) {
            auto operation = std::make_shared<Operation>([&, number] {
                if (number < 2) {
                    begun.count_down();
                    goOn.wait();
                }
                ++ran;
            });
            operation->setCompletionHook([&] { ++over; });
            queue.add(std::move(operation));
        }
        begun.wait();
        releaser = std::thread([&] { goOn.count_down(); });
    }
    EXPECT_GE(ran, 2);
    EXPECT_EQ(over, 10);
    releaser.join();
}

TEST(OperationQueueTest, LeavesBehindWhatIsStuck) {
    using namespace std::chrono_literals;
    std::latch begun(1);
    std::latch goOn(1);
    std::atomic<int> ran = 0;
    {
        OperationQueue queue(1);
        queue.add(std::make_shared<Operation>([&] {
            begun.count_down();
            goOn.wait();
            ++ran;
        }));
        queue.add(std::make_shared<Operation>([&] { ++ran; })); // never comes to its turn
        begun.wait();
        EXPECT_FALSE(queue.endWithin(1ms));
        queue.add(std::make_shared<Operation>([&] { ++ran; }));
    }
    EXPECT_FALSE(OperationQueue::waitForAll(1ms));
    goOn.count_down();
    EXPECT_TRUE(OperationQueue::waitForAll(10s)) << "the thread needs nothing of the queue's";
    EXPECT_EQ(ran, 1);
    OperationQueue idle(1);
    idle.add(std::make_shared<Operation>([] {}));
    EXPECT_TRUE(idle.endWithin(10s));
}

TEST(OperationQueueTest, SilentFilesGiveUpTheirPlacesUntilTheyAnswer) {
    using namespace std::chrono_literals;
    OperationQueue queue(3);
    queue.setSlotTimeout(50ms);
    std::latch fileAnswers(1);
    std::atomic<int> working = 0;
    std::atomic<int> most = 0;
    const auto work = [&] { // slow, but its file answers
        most = std::max(most.load(), ++working);
        for (int read = 0; read < 10; ++read) {
            const FileWatch::Call call;
            std::this_thread::sleep_for(10ms);
        }
        --working;
    };
    std::latch answered(20);
    const auto add = [&](bool isSilent) {
        queue.add(std::make_shared<Operation>([&, isSilent] {
            if (isSilent) {
                const FileWatch::Call call;
                fileAnswers.wait();
            }
            work();
            answered.count_down();
        }));
    };
    for (int file = 0; file < 10; ++file)
        add(true);
    std::latch othersDone(1);
    for (int file = 0; file < 10; ++file)
        add(false);
    queue.add(std::make_shared<Operation>([&] { othersDone.count_down(); }));
    othersDone.wait();
    fileAnswers.count_down();
    answered.wait();
    EXPECT_LE(most, 3);
}

TEST(OperationQueueTest, LeavesALimitedNumberOfThreadsWithoutAPlaceAndEndsWithThem) {
    using namespace std::chrono_literals;
    constexpr std::size_t most = OperationQueue::maxWithoutSlot + 2;
    const auto fileAnswers = std::make_shared<std::latch>(1);
    const auto begun = std::make_shared<std::atomic<std::size_t>>(0);
    const auto wasAbandoned = std::make_shared<std::atomic<int>>(0);
    OperationQueue queue(2);
    queue.setSlotTimeout(5ms);
    for (std::size_t file = 0; file < 2 * most; ++file) {
        queue.add(std::make_shared<Operation>([=] {
            {
                const FileWatch::Call call;
                ++*begun;
                fileAnswers->wait();
            }
            *wasAbandoned += FileWatch::isCurrentAbandoned() ? 1 : 0;
        }));
    }
    while (*begun < most)
        std::this_thread::yield();
    EXPECT_FALSE(queue.endWithin(100ms));
    EXPECT_EQ(*begun, most);
    fileAnswers->count_down();
    EXPECT_TRUE(OperationQueue::waitForAll(10s));
    EXPECT_EQ(*wasAbandoned, OperationQueue::maxWithoutSlot);
}

TEST(OperationQueueTest, WhatIsAddedFirstOvertakes) {
    std::vector<int> order; // of the queue's one thread
    std::latch added(1);
    OperationQueue queue(1);
    queue.add(std::make_shared<Operation>([&] { added.wait(); }));
    for (const int number : {2, 3})
        queue.add(std::make_shared<Operation>([&, number] { order.push_back(number); }));
    std::latch done(1);
    queue.add(std::make_shared<Operation>([&] { done.count_down(); }));
    queue.add(std::make_shared<Operation>([&] { order.push_back(1); }),
              OperationQueue::Position::First);
    added.count_down();
    done.wait();
    EXPECT_EQ(order.back(), 3);
    EXPECT_LT(std::ranges::find(order, 1), std::ranges::find(order, 3));
}

TEST(ReadPriorityTest, YieldingReadsWaitForMusicButNotForOneThatHangs) {
    using namespace std::chrono_literals;
    constexpr std::size_t wanted = 4 * YieldingReads::maxReadSize;
    const MusicRead hanging;
    std::this_thread::sleep_for(YieldingReads::maxWait);
    auto reading = std::make_unique<MusicRead>();
    EXPECT_EQ(YieldingReads::waitForMusic(wanted), wanted) << "nobody asked it to wait";
    std::atomic<bool> hasMusicStopped = false;
    std::thread cover([&] {
        const YieldingReads yielding;
        EXPECT_EQ(YieldingReads::waitForMusic(wanted), YieldingReads::maxReadSize);
        EXPECT_TRUE(hasMusicStopped);
    });
    std::this_thread::sleep_for(100ms); // in which it must not get through
    hasMusicStopped = true;
    reading.reset();
    cover.join();
    const auto start = std::chrono::steady_clock::now();
    const YieldingReads yielding;
    static_cast<void>(YieldingReads::waitForMusic(wanted));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
}

} // namespace
