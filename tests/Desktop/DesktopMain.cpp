#include <QGuiApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // One bus stands for both, so that a login manager can be played on it.
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationDisplayName(u"Tamsy Music"_qs);
    QGuiApplication::setDesktopFileName(u"tamsy-music"_qs);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
