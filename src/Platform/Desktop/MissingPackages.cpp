#include "Platform/Desktop/MissingPackages.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QImageReader>
#include <QRegularExpression>

namespace tamsy {

QString packageOfMissingModule(const QString& error) {
    static const QRegularExpression notInstalled(
        QStringLiteral(R"re(module "([\w.]+)"(?: version [\d.]+)? is not installed)re"));
    const QRegularExpressionMatch found = notInstalled.match(error);
    if (!found.hasMatch())
        return {};
    return QStringLiteral("qml6-module-") + found.captured(1).toLower().replace(u'.', u'-');
}

void reportMissingPackages() {
    if (!QImageReader::supportedImageFormats().contains("svg"))
        qWarning("[Start] no icons: install qt6-svg-plugins, which is libqt6svg6 in Debian 12");
    if (!QFontMetrics(QGuiApplication::font()).inFontUcs4(U'音'))
        qWarning("[Start] no Chinese glyphs: install fonts-noto-cjk");
}

} // namespace tamsy
