#include "Views/NowPlaying/StaticGradient.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

namespace tamsy {
namespace {

constexpr double centerShade = 0.06;
constexpr double sideShade = 0.08;
constexpr double shadeRadius = 1000; // points

/// Black of this opacity, fading out; multiplying with it equals drawing black over.
QGradient shaded(QGradient gradient, double opacity) {
    gradient.setColorAt(0, QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity)));
    gradient.setColorAt(1, Qt::transparent);
    return gradient;
}

} // namespace

StaticGradient::StaticGradient(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setOpaquePainting(true);
    connect(this, &StaticGradient::colorsChanged, this, [this] { update(); });
}

void StaticGradient::paint(QPainter* painter) {
    const QRectF area = boundingRect();
    QLinearGradient colors(area.topLeft(), area.bottomRight());
    colors.setColorAt(0, firstColor_);
    colors.setColorAt(1, secondColor_);
    painter->fillRect(area, colors);
    painter->fillRect(area, shaded(QRadialGradient(area.center(), shadeRadius), centerShade));
    painter->fillRect(area, shaded(QLinearGradient(area.topLeft(), area.topRight()), sideShade));
    painter->fillRect(area, shaded(QLinearGradient(area.topLeft(), area.bottomLeft()), sideShade));
}

} // namespace tamsy
