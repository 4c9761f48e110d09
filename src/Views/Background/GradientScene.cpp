#include "Views/Background/GradientScene.h"

#include <algorithm>
#include <cmath>

namespace tamsy {
namespace {

constexpr float sideShade = 0.08F;

/// What of a blob's opacity is the same everywhere.
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
    float tip; // the mean distance from the centre under the blur is deviation * sqrt(pi / 2) there
    float foot; // the mean of what is above zero is deviation / radius / sqrt(2 pi) there
    float opacity;
};

// By absolute values: a branch would keep the compiler from working on several vertices at once.
float positive(float value) {
    return 0.5F * (value + std::abs(value));
}
float toSide(float position, float length) {
    return 0.5F * length - std::abs(position - 0.5F * length);
}

/// Share of a Gaussian that lies inside of a side, for `t` from 0 at the side to 1 where the fade
/// ends; off by at most 0.01.
float inside(float t) {
    const float missing = positive(1 - t);
    return 1 - 0.5F * missing * missing;
}

/// Some vertices part by part, so that the compiler can work on several at once. For that its loops
/// use copies: what they write could be what they read elsewhere.
struct Block {
    static constexpr std::size_t size = 128;
    using Values = std::array<float, size>;

    Values x{};
    Values y{};
    Values opacity{};
    std::array<Values, 3> dark{}; // what is missing to full light

    void fill(GradientScene scene) {
        const float width = std::max(scene.width, 1.0F);
        const float height = std::max(scene.height, 1.0F);
        const float along = 1 / (width * width + height * height);
        Values mix{};
        Values left{}; // of the light; black in multiply blend is black drawn over
        for (std::size_t i = 0; i < size; ++i) {
            const float dx = x[i] - 0.5F * width;
            const float dy = y[i] - 0.5F * height;
            const float fromCenter = 1 - std::sqrt(dx * dx + dy * dy) / GradientScene::shadeRadius;
            mix[i] = (x[i] * width + y[i] * height) * along;
            left[i] = (1 - GradientScene::centerShade * positive(fromCenter)) *
                      (1 - sideShade * (1 - x[i] / width)) * (1 - sideShade * (1 - y[i] / height));
        }
        for (std::size_t part = 0; part < 3; ++part) {
            const float first = scene.firstColor[part];
            const float range = scene.secondColor[part] - first;
            for (std::size_t i = 0; i < size; ++i)
                dark[part][i] = 1 - (first + range * mix[i]) * left[i];
        }
    }

    void screen(PlacedBlob blob, float width, float height) {
        const Cone cone(blob);
        const float fade = 1 / (GradientScene::fadeDeviations * blob.deviation);
        for (std::size_t i = 0; i < size; ++i) {
            const float dx = x[i] - blob.x;
            const float dy = y[i] - blob.y;
            // Nothing comes in under the blur from outside of the area.
            opacity[i] = cone.at(dx * dx + dy * dy) * inside(toSide(x[i], width) * fade) *
                         inside(toSide(y[i], height) * fade);
        }
        for (std::size_t part = 0; part < 3; ++part) {
            for (std::size_t i = 0; i < size; ++i)
                dark[part][i] *= 1 - opacity[i] * blob.color[part];
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
            for (std::size_t part = 0; part < 3; ++part)
                some[i].color[part] = 1 - block.dark[part][i];
        }
    }
}

} // namespace tamsy
