#include "Playback/Output/RealtimePriority.h"
#include "Playback/TestAudio.h"

#include <QDBusConnection>
#include <QObject>

#include <atomic>
#include <csignal>
#include <thread>

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tamsy::test {

/// RealtimeKit, which refuses a caller whose runs aren't limited.
class RealtimeKit : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.RealtimeKit1")
    Q_PROPERTY(int MaxRealtimePriority READ maxPriority CONSTANT)
    Q_PROPERTY(qlonglong RTTimeUSecMax READ maxRun CONSTANT)

  public:
    [[nodiscard]] int maxPriority() const { return 20; }
    [[nodiscard]] qlonglong maxRun() const { return 200'000; }

  public Q_SLOTS:
    void MakeThreadRealtime(qulonglong thread, uint priority) {
        rlimit limit{};
        ::getrlimit(RLIMIT_RTTIME, &limit);
        isLimited = limit.rlim_max <= static_cast<rlim_t>(maxRun()) && limit.rlim_cur > 0;
        const sched_param parameter{.sched_priority = static_cast<int>(priority)};
        isAllowed = ::sched_setscheduler(static_cast<pid_t>(thread), SCHED_RR | SCHED_RESET_ON_FORK,
                                         &parameter) == 0;
        asked = static_cast<pid_t>(thread);
    }

  public:
    pid_t asked = 0;
    bool isLimited = false;
    bool isAllowed = false;
};

namespace {

TEST(RealtimePriority, IsAskedForWithItsLimitAndGivenBackInTime) {
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
    QDBusConnection bus = QDBusConnection::sessionBus();
    RealtimeKit kit;
    ASSERT_TRUE(
        bus.registerObject(u"/org/freedesktop/RealtimeKit1"_qs, &kit,
                           QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties));
    ASSERT_TRUE(bus.registerService(u"org.freedesktop.RealtimeKit1"_qs));
    std::atomic<pid_t> id = 0;
    std::atomic<bool> isOver = false;
    std::jthread feeder([&] {
        id = ::gettid();
        isOver.wait(false);
    });
    ASSERT_TRUE(waitUntil([&] { return id != 0; }));
    RealtimePriority::request(id);
    EXPECT_TRUE(waitUntil([&] { return kit.asked == id; }));
    EXPECT_TRUE(kit.isLimited);
    const bool isAllowed = kit.isAllowed;
    for (int track = 0; track < 20; ++track) { // whose devices' threads end with them
        pid_t next = 0;
        std::thread([&] { RealtimePriority::request(next = ::gettid()); }).join();
        EXPECT_TRUE(waitUntil([&] { return kit.asked == next; }));
    }
    if (isAllowed) {
        EXPECT_EQ(::sched_getscheduler(id), SCHED_RR | SCHED_RESET_ON_FORK);
        ::raise(SIGXCPU);
        EXPECT_EQ(::sched_getscheduler(id) & ~SCHED_RESET_ON_FORK, SCHED_OTHER);
    }
    isOver = true;
    isOver.notify_all();
}

} // namespace
} // namespace tamsy::test

#include "RealtimePriorityTests.moc"
