#include "Platform/Desktop/MissingPackages.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tamsy;

namespace {

TEST(MissingPackages, ErrorNamesTheModulesPackage) {
    const std::pair<const char*, const char*> cases[] = {
        {R"(module "QtQuick.Controls" is not installed)", "qml6-module-qtquick-controls"},
        {R"(module "QtQml.WorkerScript" version 2.15 is not installed)",
         "qml6-module-qtqml-workerscript"},
        {R"(module "Qt.labs.folderlistmodel" plugin "x" not found)", ""},
        {"Type ContentView unavailable", ""},
    };
    for (const auto& [error, package] : cases)
        EXPECT_EQ(packageOfMissingModule(QLatin1String(error)), QLatin1String(package)) << error;
}

TEST(MissingPackages, OnlyASessionWithoutXNeedsTheWaylandPlugin) {
    const QTemporaryDir plugins;
    const QStringList directories{u"/nonexistent"_qs, plugins.path()};
    for (const char* name : {"DISPLAY", "QT_QPA_PLATFORM", "QT_QPA_PLATFORM_PLUGIN_PATH"})
        qunsetenv(name);
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_EQ(packageOfMissingPlatform(directories), u"qt6-wayland"_qs);
    qputenv("DISPLAY", ":0");
    EXPECT_EQ(packageOfMissingPlatform(directories), QString());
    qunsetenv("DISPLAY");
    ASSERT_TRUE(QDir(plugins.path()).mkdir(u"platforms"_qs));
    QFile plugin(plugins.filePath(u"platforms/libqwayland-generic.so"_qs));
    ASSERT_TRUE(plugin.open(QIODevice::WriteOnly));
    EXPECT_EQ(packageOfMissingPlatform(directories), QString());
}

} // namespace
