#include "Platform/Desktop/MissingPackages.h"

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

} // namespace
