#include "Platform/Desktop/MissingPackages.h"

#include <QDir>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImageReader>
#include <QRegularExpression>

#include <algorithm>

namespace tamsy {

QString packageOfMissingModule(const QString& error) {
    static const QRegularExpression notInstalled(
        QStringLiteral(R"re(module "([\w.]+)"(?: version [\d.]+)? is not installed)re"));
    const QRegularExpressionMatch found = notInstalled.match(error);
    if (!found.hasMatch())
        return {};
    return QStringLiteral("qml6-module-") + found.captured(1).toLower().replace(u'.', u'-');
}

QString packageOfMissingPlatform(const QStringList& pluginDirectories) {
    const bool isChosen = !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") ||
                          !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM_PLUGIN_PATH");
    if (isChosen || !qEnvironmentVariableIsEmpty("DISPLAY") ||
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return {};
    const bool isThere = std::ranges::any_of(pluginDirectories, [](const QString& directory) {
        const QStringList plugins{QStringLiteral("libqwayland*")};
        return !QDir(directory + QStringLiteral("/platforms")).entryList(plugins).isEmpty();
    });
    return isThere ? QString() : QStringLiteral("qt6-wayland");
}

void reportMissingPackages() {
    if (!QImageReader::supportedImageFormats().contains("svg"))
        qWarning("[Start] no icons: install qt6-svg-plugins, which is libqt6svg6 in Debian 12");
    if (!QFontMetrics(QGuiApplication::font()).inFontUcs4(U'音'))
        qWarning("[Start] no Chinese glyphs: install fonts-noto-cjk");
}

} // namespace tamsy
