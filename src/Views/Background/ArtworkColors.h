#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QSize>

#include <array>
#include <utility>

namespace tamsy {

/// An opaque colour in sRGB, each part 0 to 1. All arithmetic stays in doubles: steps that are
/// rounded to a picture's depth in between would show in the end.
struct ArtworkColor {
    double red = 0;
    double green = 0;
    double blue = 0;

    /// Six tenths of the light.
    [[nodiscard]] ArtworkColor darker() const;

    /// Adds `amount` to the brightness (HSB), up to 1.
    [[nodiscard]] ArtworkColor brighterBy(double amount) const;

    /// Turns the hue by `turn`, a part of the whole circle between -1 and 1.
    [[nodiscard]] ArtworkColor rotateHue(double turn) const;

    /// Adds `amount` to the saturation (HSB), between 0 and 1.
    [[nodiscard]] ArtworkColor saturateBy(double amount) const;

    /// Relative luminance, 0 to 1 (WCAG 2.1).
    [[nodiscard]] double luminance() const;

    [[nodiscard]] QColor toColor() const;

    /// Red, green and blue.
    [[nodiscard]] std::array<float, 3> parts() const;

    friend bool operator==(const ArtworkColor&, const ArtworkColor&) = default;
};

/// The colours in which the six blobs glow.
using BubbleColors = std::array<ArtworkColor, 6>;

/// The two colours of a cover that make its gradient, from 576 of its pixels: a clustering into two
/// groups, in their order, made somewhat brighter and fuller. Nearly white and nearly black pixels
/// don't count. Two dark greys if there is no picture.
[[nodiscard]] std::pair<ArtworkColor, ArtworkColor> extractTwoDominantColors(const QImage& image);

/// Three neighbours of `a` and three of `b`, brighter and paler.
[[nodiscard]] BubbleColors generateBubbleColors(const ArtworkColor& a, const ArtworkColor& b);

/// Tells pictures apart by their pixels: two with one signature look the same.
[[nodiscard]] QByteArray imageSignature(const QImage& image);

/// The picture at `size`, each pixel the nearest one of the source. Null if there is none.
[[nodiscard]] QImage resized(const QImage& image, QSize size);

/// How strong the shadow of white text must be, 0 to 1, to be read where the ground is brightest:
/// below a blob. On darker ground nobody sees the shadow.
[[nodiscard]] double textShadowStrength(const ArtworkColor& a, const ArtworkColor& b,
                                        const BubbleColors& bubbles);

} // namespace tamsy
