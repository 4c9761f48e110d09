#pragma once

#include <array>
#include <span>

namespace tamsy {

/// A corner of the background's triangles. Position in points, to the right and down; colour in
/// sRGB, each part 0 to 1.
struct GradientVertex {
    float x = 0;
    float y = 0;
    std::array<float, 3> color{};
};

/// A blob at a moment, lengths in points.
struct PlacedBlob {
    float x = 0;
    float y = 0;
    float radius = 1;    ///< where it ends before it is blurred
    float deviation = 1; ///< of its blur
    float opacity = 0;   ///< at its centre before it is blurred, 0 to 1
    std::array<float, 3> color{};

    /// Opacity at this distance from the centre, 0 to `opacity`: a cone after a Gaussian blur, in
    /// closed form. The blur rounds the cone's tip and foot.
    [[nodiscard]] float opacityAt(float distance) const;

    friend bool operator==(const PlacedBlob&, const PlacedBlob&) = default;
};

/// The background at a moment: the cover's gradient, a little shade over it, and on top six
/// blurred, glowing blobs in screen blend. Its colours follow from the position alone.
struct GradientScene {
    /// Where the shade from the centre ends, in points.
    static constexpr float shadeRadius = 1000;
    /// Opacity of that shade at the centre.
    static constexpr float centerShade = 0.06F;
    /// A blob fades at the area's sides over this many deviations of its blur.
    static constexpr float fadeDeviations = 2.4F;

    float width = 0; ///< points
    float height = 0;
    std::array<float, 3> firstColor{};  ///< at the top leading corner
    std::array<float, 3> secondColor{}; ///< at the bottom trailing corner
    std::array<PlacedBlob, 6> blobs;

    /// Sets the colours of vertices by their positions.
    void color(std::span<GradientVertex> vertices) const;
};

} // namespace tamsy
