#include "Platform/Desktop/SleepInhibitor.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QTest>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <array>

using namespace tamsy;

namespace {

/// Plays either service: notes what it is asked for, and whether it is still asked for it.
class Inhibitors : public QDBusVirtualObject {
  public:
    QStringList calls;
    int pipeEnd = -1; // ends when the lock is closed

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        calls.append(message.member() + QLatin1Char(' ') + message.signature() + QLatin1Char(' ') +
                     message.path());
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
        bus.send(message.createReply(answer));
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
    /// Puts the service on the bus for this test.
    void offer(const QString& name, const QString& path) {
        ASSERT_TRUE(bus.registerVirtualObject(path, &inhibitors, QDBusConnection::SubPath));
        ASSERT_TRUE(bus.registerService(name));
        name_ = name;
        path_ = path;
    }
    void TearDown() override {
        bus.unregisterObject(path_, QDBusConnection::UnregisterTree);
        bus.unregisterService(name_);
        ::close(inhibitors.pipeEnd);
    }
    bool waitFor(qsizetype count) {
        return QTest::qWaitFor([&] { return inhibitors.calls.size() == count; });
    }

    QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"inhibitors"_qs);
    Inhibitors inhibitors;
    SleepInhibitor inhibitor{u"Tamsy Music"_qs, u"播放"_qs};

  private:
    QString name_;
    QString path_;
};

TEST_F(SleepInhibitorTest, AsksThePortalOnceAndTakesItBackSomeTimeAfterThePause) {
    offer(u"org.freedesktop.portal.Desktop"_qs, u"/org/freedesktop/portal/desktop"_qs);
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
    offer(u"org.freedesktop.login1"_qs, u"/org/freedesktop/login1"_qs);
    inhibitor.setInhibiting(true);
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(inhibitors.calls.constLast(), u"Inhibit ssss /org/freedesktop/login1"_qs);
    QTest::qWait(100);
    EXPECT_TRUE(inhibitors.isLockHeld());
    inhibitor.setInhibiting(false);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !inhibitors.isLockHeld(); }));
}

} // namespace
