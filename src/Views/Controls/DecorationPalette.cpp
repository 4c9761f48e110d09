#include "Views/Controls/DecorationPalette.h"

#include <QGuiApplication>
#include <QWindow>
#include <QtQml/QQmlProperty>

namespace tamsy {
namespace {

QColor colorOf(const QWindow& window, const QString& role) {
    return QQmlProperty::read(&window, role).value<QColor>();
}

void setPalette(const QPalette& palette) {
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        QGuiApplication::setPalette(palette);
}

} // namespace

DecorationPalette::DecorationPalette(const QWindow& window) : former_(QGuiApplication::palette()) {
    QPalette palette = former_;
    const QColor ink = colorOf(window, QStringLiteral("palette.windowText"));
    palette.setColor(QPalette::Window, colorOf(window, QStringLiteral("palette.window")));
    palette.setColor(QPalette::WindowText, ink);
    palette.setColor(QPalette::Disabled, QPalette::WindowText,
                     colorOf(window, QStringLiteral("palette.disabled.windowText")));
    setPalette(palette);
}

DecorationPalette::~DecorationPalette() {
    setPalette(former_);
}

} // namespace tamsy
