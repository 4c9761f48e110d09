#include <QGuiApplication>
#include <QQuickStyle>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QQuickStyle::setStyle(u"Fusion"_qs);
    QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
