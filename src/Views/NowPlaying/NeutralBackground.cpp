#include "Views/NowPlaying/NeutralBackground.h"

#include <QPainter>
#include <QRadialGradient>

namespace tamsy {
namespace {

constexpr float grayOpacity = 0.4F;
constexpr float centerShade = 0.18F;
constexpr double shadeRadius = 900; // points

} // namespace

void NeutralBackground::paint(QPainter* painter) {
    const QRectF area = boundingRect();
    // Multiplying with black equals drawing black over.
    QRadialGradient shade(area.center(), shadeRadius);
    shade.setColorAt(0, QColor::fromRgbF(0, 0, 0, centerShade));
    shade.setColorAt(1, Qt::transparent);
    painter->fillRect(area, QColor::fromRgbF(0.5F, 0.5F, 0.5F, grayOpacity));
    painter->fillRect(area, shade);
}

} // namespace tamsy
