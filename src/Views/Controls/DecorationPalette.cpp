#include "Views/Controls/DecorationPalette.h"

#include <QGuiApplication>
#include <QWindow>
#include <QtQml/QQmlProperty>

namespace tamsy {
namespace {

QColor colorOf(const QWindow& window, const QString& role) {
    return QQmlProperty::read(&window, role).value<QColor>();
}

bool isOnWayland() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

void setPalette(const QPalette& palette) {
    if (isOnWayland())
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

void repaintDecoration(QWindow& window) {
    if (!isOnWayland() || window.frameMargins().isNull())
        return;
    // It reads its colours when it is made.
    const DecorationPalette colors(window);
    window.setFlag(Qt::FramelessWindowHint, true);
    window.setFlag(Qt::FramelessWindowHint, false);
}

} // namespace tamsy
