#include "Platform/Desktop/ColorScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>
#include <gtest/gtest.h>

using namespace tamsy;

namespace {

const QString portalPath = u"/org/freedesktop/portal/desktop"_qs;

/// Plays the desktop's settings.
class SettingsPortal : public QDBusVirtualObject {
  public:
    explicit SettingsPortal(uint scheme) : scheme_(scheme) {
        EXPECT_TRUE(bus_.registerVirtualObject(portalPath, this));
        EXPECT_TRUE(bus_.registerService(u"org.freedesktop.portal.Desktop"_qs));
    }
    ~SettingsPortal() override {
        bus_.unregisterService(u"org.freedesktop.portal.Desktop"_qs);
        bus_.unregisterObject(portalPath);
    }

    void change(const QString& group, uint scheme) {
        QDBusMessage signal = QDBusMessage::createSignal(
            portalPath, u"org.freedesktop.portal.Settings"_qs, u"SettingChanged"_qs);
        signal.setArguments({group, u"color-scheme"_qs, wrapped(scheme)});
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
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"settings"_qs);
    uint scheme_;
};

TEST(ColorScheme, FollowsTheDesktopWhileItRuns) {
    SettingsPortal portal(1);
    ColorScheme scheme;
    EXPECT_TRUE(QTest::qWaitFor([&] { return scheme.isDark(); }));
    portal.change(u"another.group"_qs, 0);
    portal.change(u"org.freedesktop.appearance"_qs, 2); // prefers light
    EXPECT_TRUE(QTest::qWaitFor([&] { return !scheme.isDark(); }));
    portal.change(u"org.freedesktop.appearance"_qs, 1);
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
