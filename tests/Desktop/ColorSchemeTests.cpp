#include "Platform/Desktop/ColorScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>
#include <gtest/gtest.h>

using namespace tamsy;

namespace {

const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");

/// Plays the desktop's settings.
class SettingsPortal : public QDBusVirtualObject {
  public:
    explicit SettingsPortal(uint scheme) : scheme_(scheme) {
        EXPECT_TRUE(bus_.registerVirtualObject(portalPath, this));
        EXPECT_TRUE(bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
    }
    ~SettingsPortal() override {
        bus_.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        bus_.unregisterObject(portalPath);
    }

    void change(const QString& group, uint scheme) {
        QDBusMessage signal = QDBusMessage::createSignal(
            portalPath, QStringLiteral("org.freedesktop.portal.Settings"),
            QStringLiteral("SettingChanged"));
        signal.setArguments({group, QStringLiteral("color-scheme"), wrapped(scheme)});
        bus_.send(signal);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        return bus.send(message.createReply(
            QVariant::fromValue(QDBusVariant(wrapped(scheme_))))); // one wrapping more
    }

  private:
    static QVariant wrapped(uint scheme) { return QVariant::fromValue(QDBusVariant(scheme)); }

    QDBusConnection bus_ =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("settings"));
    uint scheme_;
};

TEST(ColorScheme, FollowsTheDesktopWhileItRuns) {
    SettingsPortal portal(1);
    ColorScheme scheme;
    EXPECT_TRUE(QTest::qWaitFor([&] { return scheme.isDark(); }));
    portal.change(QStringLiteral("another.group"), 0);
    portal.change(QStringLiteral("org.freedesktop.appearance"), 2); // prefers light
    EXPECT_TRUE(QTest::qWaitFor([&] { return !scheme.isDark(); }));
    portal.change(QStringLiteral("org.freedesktop.appearance"), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return scheme.isDark(); }));
}

TEST(ColorScheme, IsLightAndHoldsNobodyUpWithoutAPortal) {
    ColorScheme scheme;
    QElapsedTimer timer;
    timer.start();
    scheme.waitForFirstAnswer();
    EXPECT_LT(timer.elapsed(), 500);
    EXPECT_FALSE(scheme.isDark());
}

} // namespace
