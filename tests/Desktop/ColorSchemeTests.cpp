#include "Desktop/PlayedService.h"
#include "Platform/Desktop/ColorScheme.h"

using namespace tamsy;

namespace {

/// Plays the desktop's settings.
class SettingsPortal : public PlayedService {
  public:
    explicit SettingsPortal(uint scheme) : scheme_(scheme) { offer(); }

    void change(const QString& group, uint scheme) {
        QDBusMessage signal = QDBusMessage::createSignal(
            portalPath, u"org.freedesktop.portal.Settings"_qs, u"SettingChanged"_qs);
        signal.setArguments({group, u"color-scheme"_qs, wrapped(scheme)});
        bus.send(signal);
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& asked) override {
        return asked.send(message.createReply(
            QVariant::fromValue(QDBusVariant(wrapped(scheme_))))); // one wrapping more
    }

  private:
    static QVariant wrapped(uint scheme) { return QVariant::fromValue(QDBusVariant(scheme)); }

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
