#include "Platform/OperationQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <latch>
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

} // namespace
