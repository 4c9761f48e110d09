#include "Platform/Mpris/MprisService.h"

#include "Platform/Mpris/MprisProperties.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <chrono>

namespace tamsy {
namespace {

using namespace std::chrono_literals;
using namespace mpris;

/// Too short to notice on a panel, and long enough to merge the stop between two tracks, or a drag
/// along the slider, into one change.
constexpr auto announcementDelay = 150ms;

// Of the D-Bus Specification's RequestName.
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;

} // namespace

MprisService::MprisService(MediaControls& controls, const MediaPlayerIdentity& identity,
                           QDBusConnection bus, QObject* parent)
    : QObject(parent),
      controls_(controls),
      bus_(std::move(bus)),
      object_(controls, identity),
      announced_(playerProperties(controls.state())) {
    announcement_.setSingleShot(true);
    announcement_.setInterval(announcementDelay);
    connect(&announcement_, &QTimer::timeout, this, &MprisService::announce);
    if (!bus_.registerVirtualObject(objectPath, &object_))
        return;
    const QString name = rootInterface + QLatin1Char('.') + identity.busNameComponent;
    requestName(name, name + QStringLiteral(".instance") +
                          QString::number(QCoreApplication::applicationPid()));
}

MprisService::~MprisService() {
    bus_.unregisterObject(objectPath);
}

void MprisService::requestName(const QString& name, const QString& nameInstead) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    call.setArguments({name, doNotQueue});
    auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, nameInstead] {
        const QDBusPendingReply<uint> reply = *answer;
        if (!reply.isError() && reply.value() != primaryOwner && !nameInstead.isEmpty())
            requestName(nameInstead, {});
        answer->deleteLater();
    });
}

void MprisService::noteChange() {
    if (!announcement_.isActive())
        announcement_.start();
}

void MprisService::noteJump() {
    hasJumped_ = true;
    noteChange();
}

void MprisService::announce() {
    const QVariantMap now = playerProperties(controls_.state());
    QVariantMap changed;
    for (auto property = now.cbegin(); property != now.cend(); ++property) {
        if (announced_.value(property.key()) != property.value())
            changed.insert(property.key(), property.value());
    }
    announced_ = now;
    if (!changed.isEmpty()) {
        QDBusMessage signal = QDBusMessage::createSignal(objectPath, propertiesInterface,
                                                         QStringLiteral("PropertiesChanged"));
        signal.setArguments({playerInterface, changed, QStringList()});
        static_cast<void>(bus_.send(signal));
    }
    if (std::exchange(hasJumped_, false)) {
        QDBusMessage signal =
            QDBusMessage::createSignal(objectPath, playerInterface, QStringLiteral("Seeked"));
        signal.setArguments({microseconds(controls_.position())});
        static_cast<void>(bus_.send(signal));
    }
}

} // namespace tamsy
