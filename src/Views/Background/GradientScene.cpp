#include "Views/Background/GradientScene.h"

#include <algorithm>
#include <cmath>

namespace tamsy {
namespace {

constexpr float sideShade = 0.08F;

/// A blob's opacity by distance, with all that doesn't depend on the distance computed once.
struct Cone {
    explicit Cone(const PlacedBlob& blob)
        : slope(1 / blob.radius),
          tip(1.5708F * blob.deviation * blob.deviation),
          foot(0.6366F * blob.deviation * blob.deviation * slope * slope),
          opacity(blob.opacity) {}

    [[nodiscard]] float at(float squaredDistance) const {
        const float rest = 1 - slope * std::sqrt(squaredDistance + tip);
        return opacity * 0.5F * (rest + std::sqrt(rest * rest + foot));
    }

    float slope;
    // The blur rounds the tip, where the mean distance is deviation * sqrt(pi / 2), and the foot,
    // where the mean of the positive part is deviation / radius / sqrt(2 pi).
    float tip;
    float foot;
    float opacity;
};

// Absolute values instead of branches, so that the compiler can vectorise.
float positive(float value) {
    return 0.5F * (value + std::abs(value));
}
float toSide(float position, float length) {
    return 0.5F * length - std::abs(position - 0.5F * length);
}

/// The part of a Gaussian inside the area, at `t` from its side: 0 at the side, 1 at the end of the
/// fade. The error is at most 0.01.
float inside(float t) {
    const float missing = positive(1 - t);
    return 1 - 0.5F * missing * missing;
}

/// Vertices as a structure of arrays, so that the compiler can vectorise. Parameters are copies:
/// references might alias the arrays.
struct Block {
    static constexpr std::size_t size = 128;
    using Values = std::array<float, size>;

    Values x{};
    Values y{};
    Values opacity{};
    std::array<Values, 3> dark{}; // 1 - light

    void fill(GradientScene scene) {
        const float width = std::max(scene.width, 1.0F);
        const float height = std::max(scene.height, 1.0F);
        const float along = 1 / (width * width + height * height);
        Values mix{};
        Values light{}; // remaining; multiplying with black equals drawing black over
        for (std::size_t i = 0; i < size; ++i) {
            const float dx = x[i] - 0.5F * width;
            const float dy = y[i] - 0.5F * height;
            const float fromCenter = 1 - std::sqrt(dx * dx + dy * dy) / GradientScene::shadeRadius;
            mix[i] = (x[i] * width + y[i] * height) * along;
            light[i] = (1 - GradientScene::centerShade * positive(fromCenter)) *
                       (1 - sideShade * (1 - x[i] / width)) * (1 - sideShade * (1 - y[i] / height));
        }
        for (std::size_t component = 0; component < 3; ++component) {
            const float first = scene.firstColor[component];
            const float range = scene.secondColor[component] - first;
            for (std::size_t i = 0; i < size; ++i)
                dark[component][i] = 1 - (first + range * mix[i]) * light[i];
        }
    }

    void screen(PlacedBlob blob, float width, float height) {
        const Cone cone(blob);
        const float fade = 1 / (GradientScene::fadeDeviations * blob.deviation);
        for (std::size_t i = 0; i < size; ++i) {
            const float dx = x[i] - blob.x;
            const float dy = y[i] - blob.y;
            // The blur takes nothing from outside the area.
            opacity[i] = cone.at(dx * dx + dy * dy) * inside(toSide(x[i], width) * fade) *
                         inside(toSide(y[i], height) * fade);
        }
        for (std::size_t component = 0; component < 3; ++component) {
            for (std::size_t i = 0; i < size; ++i)
                dark[component][i] *= 1 - opacity[i] * blob.color[component];
        }
    }
};

} // namespace

float PlacedBlob::opacityAt(float distance) const {
    return Cone(*this).at(distance * distance);
}

void GradientScene::color(std::span<GradientVertex> vertices) const {
    Block block;
    while (!vertices.empty()) {
        const auto some = vertices.first(std::min(vertices.size(), Block::size));
        vertices = vertices.subspan(some.size());
        for (std::size_t i = 0; i < some.size(); ++i) {
            block.x[i] = some[i].x;
            block.y[i] = some[i].y;
        }
        block.fill(*this);
        for (const PlacedBlob& blob : blobs) {
            if (blob.opacity > 0)
                block.screen(blob, width, height);
        }
        for (std::size_t i = 0; i < some.size(); ++i) {
            for (std::size_t component = 0; component < 3; ++component)
                some[i].color[component] = 1 - block.dark[component][i];
        }
    }
}

} // namespace tamsy
