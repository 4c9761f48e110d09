#pragma once

#include <array>
#include <span>

namespace tamsy {

/// A vertex of the background: position in points, colour in sRGB with components from 0 to 1.
struct GradientVertex {
    float x = 0;
    float y = 0;
    std::array<float, 3> color{};
};

/// A blob at a point in time. Lengths are in points.
struct PlacedBlob {
    float x = 0;
    float y = 0;
    float radius = 1;    ///< before the blur
    float deviation = 1; ///< standard deviation of the blur
    float opacity = 0;   ///< at the centre before the blur, 0 to 1
    std::array<float, 3> color{};

    /// The opacity at this distance from the centre, 0 to `opacity`: a cone after a Gaussian blur,
    /// in closed form.
    [[nodiscard]] float opacityAt(float distance) const;
};

/// The background at a point in time: the cover's gradient, slightly shaded, and over it six
/// blurred blobs in screen blend.
struct GradientScene {
    /// Radius of the shade around the centre, in points.
    static constexpr float shadeRadius = 1000;
    /// Opacity of that shade at the centre.
    static constexpr float centerShade = 0.06F;
    /// A blob fades out towards the area's sides over this many standard deviations of its blur.
    static constexpr float fadeDeviations = 2.4F;

    float width = 0; ///< points
    float height = 0;
    std::array<float, 3> firstColor{};  ///< at the top left corner
    std::array<float, 3> secondColor{}; ///< at the bottom right corner
    std::array<PlacedBlob, 6> blobs;

    /// Sets the vertices' colours from their positions.
    void color(std::span<GradientVertex> vertices) const;
};

} // namespace tamsy
