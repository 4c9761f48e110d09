#include "Platform/Desktop/SleepInhibitor.h"

#include "Platform/Desktop/Portal.h"
#include "Platform/Threads/InterfaceThread.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QPointer>

#include <chrono>

namespace tamsy {
namespace {

using namespace std::chrono_literals;

/// The portal's flag for suspending when idle.
constexpr uint suspendFlag = 4;

constexpr auto delayOfRelease = 1s;

} // namespace

SleepInhibitor::SleepInhibitor(QString who, QString why, QDBusConnection session, QObject* parent)
    : QObject(parent), who_(std::move(who)), why_(std::move(why)), session_(std::move(session)) {
    releaseDelay_.setSingleShot(true);
    releaseDelay_.setInterval(delayOfRelease);
    connect(&releaseDelay_, &QTimer::timeout, this, [this] {
        isWanted_ = false;
        follow();
    });
}

SleepInhibitor::~SleepInhibitor() {
    release();
}

void SleepInhibitor::setInhibiting(bool inhibiting) {
    if (!inhibiting) {
        if (isWanted_ && !releaseDelay_.isActive())
            releaseDelay_.start();
        return;
    }
    releaseDelay_.stop();
    isWanted_ = true;
    follow();
}

/// Does nothing while a reply is pending; the reply calls it again.
void SleepInhibitor::follow() {
    if (isWanted_ && state_ == State::Released)
        askPortal();
    else if (!isWanted_ && state_ == State::Held)
        release();
}

void SleepInhibitor::ask(const QDBusConnection& bus, const QDBusMessage& call, Answer granted,
                         std::function<void()> refused) {
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [answer, granted = std::move(granted), refused = std::move(refused)] {
                answer->deleteLater();
                if (answer->isError())
                    refused();
                else
                    granted(answer->reply());
            });
}

void SleepInhibitor::askPortal() {
    state_ = State::Asking;
    QDBusMessage call = QDBusMessage::createMethodCall(
        portalService, portalPath, QStringLiteral("org.freedesktop.portal.Inhibit"),
        QStringLiteral("Inhibit"));
    call.setArguments({QString(), suspendFlag, QVariantMap{{QStringLiteral("reason"), why_}}});
    ask(
        session_, call,
        [this](const QDBusMessage& reply) {
            portalHandle_ = reply.arguments().value(0).value<QDBusObjectPath>().path();
            hold();
        },
        [this] { connectToLoginManager(); });
}

void SleepInhibitor::connectToLoginManager() {
    // Connecting blocks, so it is done on a worker.
    connector_.start([self = QPointer<SleepInhibitor>(this)] {
        const QDBusConnection system = QDBusConnection::systemBus();
        InterfaceThread::run([self, system] {
            if (SleepInhibitor* inhibitor = self.data(); inhibitor != nullptr)
                inhibitor->askLoginManager(system);
        });
    });
}

void SleepInhibitor::askLoginManager(const QDBusConnection& system) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    // "sleep" would also prevent the user from suspending.
    call.setArguments({QStringLiteral("idle"), who_, why_, QStringLiteral("block")});
    ask(
        system, call,
        [this](const QDBusMessage& reply) {
            lock_ = reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
            hold();
        },
        [this] { state_ = State::Released; }); // retried with the next track
}

void SleepInhibitor::hold() {
    state_ = State::Held;
    follow();
}

void SleepInhibitor::release() {
    if (!portalHandle_.isEmpty()) {
        const QDBusMessage call = QDBusMessage::createMethodCall(
            portalService, portalHandle_, QStringLiteral("org.freedesktop.portal.Request"),
            QStringLiteral("Close"));
        static_cast<void>(session_.send(call));
    }
    portalHandle_.clear();
    lock_ = QDBusUnixFileDescriptor();
    state_ = State::Released;
}

} // namespace tamsy
