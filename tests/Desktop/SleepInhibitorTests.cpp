#include "Desktop/PlayedService.h"
#include "Platform/Desktop/SleepInhibitor.h"

#include <QDBusObjectPath>

#include <fcntl.h>
#include <unistd.h>

#include <array>

using namespace tamsy;

namespace {

/// Plays either service: notes what it is asked for, and whether it is still asked for it.
class Inhibitors : public PlayedService {
  public:
    ~Inhibitors() override { ::close(pipeEnd); }

    QStringList calls;
    int pipeEnd = -1; // ends when the lock is closed

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& asked) override {
        calls.append(message.member() + u' ' + message.signature() + u' ' + message.path());
        QVariantList answer;
        if (message.interface() == QLatin1String("org.freedesktop.portal.Inhibit")) {
            answer = {
                QVariant::fromValue(QDBusObjectPath("/org/freedesktop/portal/desktop/request/1"))};
        } else if (message.member() == QLatin1String("Inhibit")) {
            EXPECT_EQ(message.arguments().constFirst().toString(), u"idle"_qs);
            std::array<int, 2> ends{};
            EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
            answer = {QVariant::fromValue(QDBusUnixFileDescriptor(ends[1]))};
            ::close(ends[1]);
            pipeEnd = ends[0];
        }
        asked.send(message.createReply(answer));
        return true;
    }

    /// Whether somebody still holds the lock.
    [[nodiscard]] bool isLockHeld() const {
        char byte = 0;
        return ::read(pipeEnd, &byte, 1) < 0;
    }
};

class SleepInhibitorTest : public testing::Test {
  protected:
    bool waitFor(qsizetype count) {
        return QTest::qWaitFor([&] { return inhibitors.calls.size() == count; });
    }

    Inhibitors inhibitors;
    SleepInhibitor inhibitor{u"Tamsy Music"_qs, u"播放"_qs};
};

TEST_F(SleepInhibitorTest, AsksThePortalOnceAndTakesItBackSomeTimeAfterThePause) {
    inhibitors.offer();
    inhibitor.setInhibiting(true);
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(inhibitors.calls.constLast(), u"Inhibit sua{sv} /org/freedesktop/portal/desktop"_qs);
    inhibitor.setInhibiting(false); // the step to the next track
    inhibitor.setInhibiting(true);
    QTest::qWait(1200);
    EXPECT_EQ(inhibitors.calls.size(), 1);
    inhibitor.setInhibiting(false);
    ASSERT_TRUE(waitFor(2));
    EXPECT_EQ(inhibitors.calls.constLast(), u"Close  /org/freedesktop/portal/desktop/request/1"_qs);
}

TEST_F(SleepInhibitorTest, TurnsToTheLoginManagerWhereThereIsNoPortal) {
    inhibitors.offer(u"org.freedesktop.login1"_qs, u"/org/freedesktop/login1"_qs);
    inhibitor.setInhibiting(true);
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(inhibitors.calls.constLast(), u"Inhibit ssss /org/freedesktop/login1"_qs);
    QTest::qWait(100);
    EXPECT_TRUE(inhibitors.isLockHeld());
    inhibitor.setInhibiting(false);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !inhibitors.isLockHeld(); }));
}

} // namespace
