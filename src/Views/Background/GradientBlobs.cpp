#include "Views/Background/GradientBlobs.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <random>

namespace tamsy {
namespace {

constexpr double margin = 0.08; // relative to the area
constexpr int smallBlob = 4;
constexpr double centerOpacity = 0.9; // relative to the blob's alpha

struct Displacement {
    QSizeF area;
    double angle;

    QPointF operator()(const CircleStyle& style) const {
        const double sign = style.reverse ? -1 : 1;
        return {sign * std::cos(angle * style.speedX) * area.width() * 0.35,
                sign * std::sin(angle * style.speedY) * area.height() * 0.25};
    }
    QPointF operator()(VerticalStyle /*style*/) const {
        return {0, std::sin(angle) * area.height() * 0.25};
    }
    QPointF operator()(HorizontalStyle /*style*/) const {
        return {std::sin(angle) * area.width() * 0.25,
                std::cos(angle * 0.2) * area.height() * 0.05};
    }
};

double insideMargin(double position, double length) {
    return std::clamp(position, length * margin, length - length * margin);
}

} // namespace

BlobConfig BlobConfig::random(int index, QRandomGenerator& source) {
    const auto between = [&source](double low, double high) {
        return std::uniform_real_distribution(low, high)(source);
    };
    BlobConfig config;
    switch (source.bounded(3)) {
    case 0:
        config.style = VerticalStyle();
        break;
    case 1:
        config.style = HorizontalStyle();
        break;
    default: {
        const double speedX = between(0.6, 1.4);
        const double speedY = between(0.6, 1.4);
        config.style = CircleStyle{speedX, speedY, source.bounded(2) == 1};
    }
    }
    config.sizeScale = index == smallBlob ? between(0.12, 0.16) : between(0.18, 0.3);
    config.center.setX(between(0.2, 0.8));
    config.center.setY(between(0.2, 0.8));
    config.originOffset.setWidth(between(-200, 200));
    config.originOffset.setHeight(between(-150, 150));
    config.alpha = between(0.65, 0.9);
    config.speed = between(0.025, 0.1);
    config.blurRadius = between(4, 8);
    return config;
}

QPointF blobPosition(const BlobConfig& config, QSizeF area, double t) {
    const double angle = 2 * std::numbers::pi * t;
    const QPointF origin(area.width() * config.center.x() + config.originOffset.width(),
                         area.height() * config.center.y() + config.originOffset.height());
    const QPointF center = origin + std::visit(Displacement{area, angle}, config.style);
    return {insideMargin(center.x(), area.width()), insideMargin(center.y(), area.height())};
}

PlacedBlob animatedBlob(const BlobConfig& config, const ArtworkColor& color, double t,
                        QSizeF area) {
    const QPointF center = blobPosition(config, area, t);
    const double radius = 2 * std::min(area.width(), area.height()) * config.sizeScale;
    return {.x = static_cast<float>(center.x()),
            .y = static_cast<float>(center.y()),
            .radius = static_cast<float>(radius),
            .deviation = static_cast<float>(config.blurRadius),
            .opacity = static_cast<float>(config.alpha * centerOpacity),
            .color = color.components()};
}

double quantizedTime(double seconds, double interval) {
    return interval * std::floor(seconds / interval);
}

double secondsSinceReferenceDate() {
    using namespace std::chrono;
    constexpr sys_days referenceDate = year(2001) / January / 1;
    return duration<double>(system_clock::now() - referenceDate).count();
}

} // namespace tamsy
