#include "Platform/Desktop/ColorScheme.h"

#include "Platform/Desktop/Portal.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace tamsy {
namespace {

using namespace std::chrono_literals;

const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");

constexpr auto firstAnswerLimit = 100ms;
constexpr uint preferDark = 1;

} // namespace

ColorScheme::ColorScheme(QObject* parent) : QObject(parent) {
    // Qt D-Bus registers the type only when it first sends one, and would reject the slot until
    // then.
    qRegisterMetaType<QDBusVariant>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                this, SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface,
                                                       QStringLiteral("Read"));
    call.setArguments({appearanceGroup, colorSchemeKey});
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (!reply.isError())
            apply(reply.value().variant());
        answer->deleteLater();
    });
}

void ColorScheme::waitForFirstAnswer() {
    const auto* answer = findChild<QDBusPendingCallWatcher*>();
    if (answer == nullptr || answer->isFinished())
        return;
    QEventLoop loop;
    connect(answer, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(firstAnswerLimit, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

void ColorScheme::settingChanged(const QString& group, const QString& key,
                                 const QDBusVariant& value) {
    if (group == appearanceGroup && key == colorSchemeKey)
        apply(value.variant());
}

void ColorScheme::apply(const QVariant& value) {
    // `Read` wraps its answer in one variant more than the change signal.
    const QVariant inner =
        value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
    const bool dark = inner.toUInt() == preferDark;
    if (dark == isDark_)
        return;
    isDark_ = dark;
    Q_EMIT isDarkChanged();
}

} // namespace tamsy
