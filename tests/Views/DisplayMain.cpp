#include <QGuiApplication>
#include <QQuickStyle>
#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

/// For tests whose windows are drawn by a graphics driver.
int main(int argc, char** argv) {
    QQuickStyle::setStyle(u"Fusion"_qs);
    QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    const int status = RUN_ALL_TESTS();
#if defined(__SANITIZE_ADDRESS__)
    // Later the driver is unloaded, and what it still holds would look lost and nameless.
    __lsan_do_leak_check();
#endif
    return status;
}
