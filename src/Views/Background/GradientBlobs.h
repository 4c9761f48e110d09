#pragma once

#include <QPointF>
#include <QRandomGenerator>
#include <QSizeF>

#include <array>
#include <variant>

namespace tamsy {

/// How a blob moves.
struct CircleStyle {
    double speedX = 1; ///< turns of the one axis in a cycle
    double speedY = 1;
    bool reverse = false;
};
struct VerticalStyle {};
struct HorizontalStyle {};
using BlobStyle = std::variant<VerticalStyle, HorizontalStyle, CircleStyle>;

/// One blurred, glowing blob of the background. Its look is fixed; its place follows from the
/// clock.
struct BlobConfig {
    BlobStyle style;
    QPointF center;            ///< fractions of the area, each 0.2 to 0.8
    QSizeF originOffset{0, 0}; ///< points, -200 to 200 by -150 to 150
    double sizeScale = 0;      ///< fraction of the shorter side, 0.12 to 0.3
    double alpha = 0;          ///< 0.65 to 0.9
    double speed = 0;          ///< cycles per second, 0.025 to 0.1
    double blurRadius = 0;     ///< points, 4 to 8

    /// Any blob; the one with `index` 4 is the small one.
    [[nodiscard]] static BlobConfig random(int index,
                                           QRandomGenerator& source = *QRandomGenerator::system());
};

using BlobConfigs = std::array<BlobConfig, 6>;

/// The centre of a blob in an area of this size at the phase `t`, counted in cycles. In points; it
/// keeps a margin of 8 % on each side.
[[nodiscard]] QPointF blobPosition(const BlobConfig& config, QSizeF area, double t);

/// The radius at which the blob has faded to nothing, before it is blurred, in points.
[[nodiscard]] double blobRadius(const BlobConfig& config, QSizeF area);

/// The time of the step of length `interval` that `seconds` falls into. All in seconds.
[[nodiscard]] double quantizedTime(double seconds, double interval);

/// Seconds since the first moment of 2001 (UTC), from which the blobs' phases count.
[[nodiscard]] double secondsSinceReferenceDate();

} // namespace tamsy
