#include "Platform/Desktop/TerminationSignals.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <csignal>

using namespace tamsy;

namespace {

TEST(TerminationSignalsTest, EachReachesTheInterfaceThreadAndAnIgnoredHangUpNobody) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const TerminationSignals signals;
        QSignalSpy received(&signals, &TerminationSignals::received);
        ASSERT_EQ(::raise(signal), 0);
        EXPECT_EQ(received.size(), 0); // not within the handler
        EXPECT_TRUE(received.wait(2000)) << signal;
    }
    (void)std::signal(SIGHUP, SIG_IGN);
    const TerminationSignals signals;
    QSignalSpy received(&signals, &TerminationSignals::received);
    ASSERT_EQ(::raise(SIGHUP), 0);
    EXPECT_FALSE(received.wait(100));
}

} // namespace
