#pragma once

#include "Views/Background/ArtworkColors.h"
#include "Views/Background/GradientScene.h"

#include <QPointF>
#include <QRandomGenerator>
#include <QSizeF>

#include <array>
#include <variant>

namespace tamsy {

/// How a blob moves.
struct CircleStyle {
    double speedX = 1; ///< oscillations along x per cycle
    double speedY = 1;
    bool reverse = false;
};
struct VerticalStyle {};
struct HorizontalStyle {};
using BlobStyle = std::variant<VerticalStyle, HorizontalStyle, CircleStyle>;

/// One blob of the background. Its position depends only on this and the clock.
struct BlobConfig {
    BlobStyle style;
    QPointF center;            ///< fractions of the area, each 0.2 to 0.8
    QSizeF originOffset{0, 0}; ///< points, -200 to 200 by -150 to 150
    double sizeScale = 0;      ///< fraction of the shorter side, 0.12 to 0.3
    double alpha = 0;          ///< 0.65 to 0.9
    double speed = 0;          ///< cycles per second, 0.025 to 0.1
    double blurRadius = 0;     ///< points, 4 to 8

    /// A random blob; the one with `index` 4 is small.
    [[nodiscard]] static BlobConfig random(int index,
                                           QRandomGenerator& source = *QRandomGenerator::system());
};

using BlobConfigs = std::array<BlobConfig, 6>;

/// A blob's centre in an area of this size, in points, at phase `t`, in cycles. It stays 8 % of the
/// area away from each side.
[[nodiscard]] QPointF blobPosition(const BlobConfig& config, QSizeF area, double t);

/// The blob as it is drawn in an area of this size at phase `t`.
[[nodiscard]] PlacedBlob animatedBlob(const BlobConfig& config, const ArtworkColor& color, double t,
                                      QSizeF area);

/// `seconds` rounded down to a multiple of `interval`, also in seconds.
[[nodiscard]] double quantizedTime(double seconds, double interval);

/// Seconds since 2001-01-01, 00:00 UTC, at which all blobs have phase 0.
[[nodiscard]] double secondsSinceReferenceDate();

} // namespace tamsy
