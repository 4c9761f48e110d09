#include "Playback/Output/RealtimePriority.h"

#include "Platform/Desktop/Portal.h"
#include "Platform/Threads/OperationQueue.h"
#include "Utils/PlaybackLogger.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QFile>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <memory>
#include <optional>

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tamsy {
namespace {

/// Low among those that RealtimeKit grants, so that a sound server's threads come first.
constexpr int wantedPriority = 5;

constexpr int answerLimit = 2000; // milliseconds for a D-Bus reply

/// The promoted threads, more than outputs can run at once. Those that have ended are overwritten.
std::array<std::atomic<pid_t>, 16> promoted;

/// Handles SIGXCPU, the kernel's warning before it kills the process. Only async-signal-safe calls
/// are allowed here.
void demoteAll(int /*signal*/) {
    const sched_param normal{};
    for (const auto& thread : promoted) {
        // RealtimeKit has set the flag, which only privileged processes may clear.
        if (const pid_t id = thread.load(); id != 0)
            ::sched_setscheduler(id, SCHED_OTHER | SCHED_RESET_ON_FORK, &normal);
    }
}

bool hasEnded(pid_t thread) {
    constexpr int onlyCheck = 0;
    return thread == 0 || ::tgkill(::getpid(), thread, onlyCheck) != 0;
}

/// Notes the thread for `demoteAll`; false if there is no room.
bool note(pid_t thread) {
    const auto free = std::ranges::find_if(promoted, hasEnded);
    if (free == promoted.end())
        return false;
    *free = thread;
    return true;
}

/// Limits how long a thread of this process may run at real-time priority without blocking, which
/// is a condition for getting it. False on failure.
bool limitRuns(qint64 microseconds) {
    struct sigaction action {};
    action.sa_handler = &demoteAll;
    action.sa_flags = SA_RESTART;
    const auto limit = static_cast<rlim_t>(microseconds);
    rlimit present{};
    if (::sigaction(SIGXCPU, &action, nullptr) != 0 || ::getrlimit(RLIMIT_RTTIME, &present) != 0)
        return false;
    // The warning comes at half the limit, so that there is time to act on it.
    const rlimit wanted{std::min(present.rlim_cur, limit / 2), std::min(present.rlim_max, limit)};
    return ::setrlimit(RLIMIT_RTTIME, &wanted) == 0;
}

/// The D-Bus service that grants real-time priority.
struct Granter {
    QDBusConnection bus;
    QString service, path, interface;
    bool isPortal;

    static Granter find() {
        if (QFile::exists(QStringLiteral("/.flatpak-info")))
            return {QDBusConnection::sessionBus(), portalService, portalPath,
                    QStringLiteral("org.freedesktop.portal.Realtime"), true};
        const QString name = QStringLiteral("org.freedesktop.RealtimeKit1");
        return {QDBusConnection::systemBus(), name, QStringLiteral("/org/freedesktop/RealtimeKit1"),
                name, false};
    }

    [[nodiscard]] QDBusMessage call(const QString& from, const QString& method,
                                    const QVariantList& arguments) const {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, from, method);
        message.setArguments(arguments);
        return bus.call(message, QDBus::Block, answerLimit);
    }

    [[nodiscard]] std::optional<qint64> property(const QString& name) const {
        const QDBusMessage reply = call(QStringLiteral("org.freedesktop.DBus.Properties"),
                                        QStringLiteral("Get"), {interface, name});
        bool isNumber = false;
        const QVariant value = reply.arguments().value(0).value<QDBusVariant>().variant();
        const qint64 number = value.toLongLong(&isNumber);
        return isNumber && number > 0 ? std::optional(number) : std::nullopt;
    }

    [[nodiscard]] QDBusMessage promote(pid_t thread, uint priority) const {
        const auto id = static_cast<qulonglong>(thread);
        if (!isPortal)
            return call(interface, QStringLiteral("MakeThreadRealtime"), {id, priority});
        return call(interface, QStringLiteral("MakeThreadRealtimeWithPID"),
                    {static_cast<qulonglong>(::getpid()), id, priority});
    }
};

void refuse(const QString& why) {
    PlaybackLogger::log(QStringLiteral("[OUTPUT] no real-time priority: ") + why);
}

void ask(pid_t thread) {
    const Granter granter = Granter::find();
    const std::optional<qint64> maxRun = granter.property(QStringLiteral("RTTimeUSecMax"));
    const std::optional<qint64> maxPriority =
        granter.property(QStringLiteral("MaxRealtimePriority"));
    if (!maxRun || !maxPriority) {
        refuse(QStringLiteral("nobody grants it"));
        return;
    }
    if (!limitRuns(*maxRun)) {
        refuse(QStringLiteral("its limit can't be set"));
        return;
    }
    if (!note(thread)) {
        refuse(QStringLiteral("too many threads have it"));
        return;
    }
    const auto priority = static_cast<uint>(std::min<qint64>(*maxPriority, wantedPriority));
    const QDBusMessage reply = granter.promote(thread, priority);
    if (reply.type() == QDBusMessage::ErrorMessage)
        refuse(reply.errorMessage());
}

} // namespace

void RealtimePriority::request(pid_t thread) {
    // On a thread of its own, since a bus may respond slowly or never. Never destroyed: a thread
    // that is stuck in a sound server may ask while the program ends.
    static auto& queue = *new OperationQueue(1, "realtime");
    queue.add(std::make_shared<Operation>([thread] { ask(thread); }));
}

} // namespace tamsy
