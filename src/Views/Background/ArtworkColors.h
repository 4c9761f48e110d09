#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QSize>

#include <array>
#include <utility>

namespace tamsy {

/// An opaque colour in sRGB, each component 0 to 1. All arithmetic is in doubles: intermediate
/// results rounded to eight bits would make visible errors.
struct ArtworkColor {
    double red = 0;
    double green = 0;
    double blue = 0;

    /// Multiplies each component by 0.6.
    [[nodiscard]] ArtworkColor darker() const;

    /// Adds `amount` to the brightness (HSB), up to 1.
    [[nodiscard]] ArtworkColor brighterBy(double amount) const;

    /// Rotates the hue by `turn`, a fraction of a full turn between -1 and 1.
    [[nodiscard]] ArtworkColor rotateHue(double turn) const;

    /// Adds `amount` to the saturation (HSB), between 0 and 1.
    [[nodiscard]] ArtworkColor saturateBy(double amount) const;

    /// Relative luminance, 0 to 1 (WCAG 2.1).
    [[nodiscard]] double luminance() const;

    [[nodiscard]] QColor toColor() const;

    /// Red, green and blue.
    [[nodiscard]] std::array<float, 3> components() const;

    friend bool operator==(const ArtworkColor&, const ArtworkColor&) = default;
};

/// The colours of the six blobs.
using BubbleColors = std::array<ArtworkColor, 6>;

/// The two dominant colours of a cover, for its gradient: 576 of its pixels, clustered into two
/// groups, whose means are made somewhat brighter and more saturated. Nearly white and nearly black
/// pixels don't count. Two dark greys if there is no picture.
[[nodiscard]] std::pair<ArtworkColor, ArtworkColor> extractTwoDominantColors(const QImage& image);

/// Three hues near `a` and three near `b`, brighter and less saturated.
[[nodiscard]] BubbleColors generateBubbleColors(const ArtworkColor& a, const ArtworkColor& b);

/// Identifies a picture by its size and pixels, whatever its format.
[[nodiscard]] QByteArray imageSignature(const QImage& image);

/// The picture scaled to `size` by nearest neighbour; null if it is null.
[[nodiscard]] QImage resized(const QImage& image, QSize size);

/// The strength, 0 to 1, that the shadow of white text needs where the background is brightest:
/// below a blob. On a darker background the shadow isn't visible.
[[nodiscard]] double textShadowStrength(const ArtworkColor& a, const ArtworkColor& b,
                                        const BubbleColors& bubbles);

} // namespace tamsy
