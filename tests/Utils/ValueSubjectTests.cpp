#include "Utils/CombineLatest.h"
#include "Utils/ValueSubject.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace tamsy;
using testing::ElementsAre;

namespace {

TEST(ValueSubject, AHandlerMayEndItsOwnAndOtherSubscriptions) {
    ValueSubject<int> subject(0);
    int calls = 0;
    Subscription second;
    const Subscription first = subject.publisher().subscribe([&](const int& value) {
        if (value == 1)
            second.cancel();
    });
    second = subject.publisher().subscribe([&](const int&) { ++calls; });
    subject.send(1);
    EXPECT_EQ(calls, 1); // only the initial delivery
}

TEST(ValueSubject, CombinedValuesAreThoseAtTheTimeOfTheSend) {
    ValueSubject<double> time(0);
    ValueSubject<bool> playing(true);
    QObject receiver;
    std::vector<std::pair<double, bool>> seen;
    const Subscriptions subscriptions = combineLatest(
        &receiver, [&](double t, bool p) { seen.emplace_back(t, p); }, time.publisher(),
        playing.publisher());
    time.send(9.9);
    playing.send(false); // must not change the values already on their way
    EXPECT_TRUE(seen.empty());
    QCoreApplication::processEvents();
    EXPECT_THAT(seen,
                ElementsAre(std::pair(0.0, true), std::pair(9.9, true), std::pair(9.9, false)));
}

TEST(ValueSubject, SendsFromAnotherThreadArriveInOrder) {
    ValueSubject<int> subject(0);
    QObject receiver;
    std::vector<int> seen;
    const Subscription subscription =
        receiveOn(&receiver, subject.publisher(), [&](int value) { seen.push_back(value); });
    std::thread sender([&] {
        for (int i = 1; i <= 1000; ++i)
            subject.send(i);
    });
    sender.join();
    QCoreApplication::processEvents();
    ASSERT_EQ(seen.size(), 1001U);
    for (std::size_t i = 0; i < seen.size(); ++i)
        EXPECT_EQ(seen[i], static_cast<int>(i));
}

} // namespace
