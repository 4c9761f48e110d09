#include "Views/Background/ArtworkGradientModel.h"
#include "Views/Background/GradientMesh.h"

#include <QRandomGenerator>
#include <gtest/gtest.h>

#include <array>
#include <cmath>

using namespace tamsy;

namespace {

/// A background of random blobs and colours at a random time.
GradientScene scene(QSizeF area, quint32 seed) {
    QRandomGenerator random(seed);
    BlobConfigs configs;
    for (std::size_t index = 0; index < configs.size(); ++index)
        configs[index] = BlobConfig::random(static_cast<int>(index), random);
    QImage cover(4, 3, QImage::Format_RGB32);
    for (int pixel = 0; pixel < 12; ++pixel)
        cover.setPixel(pixel % 4, pixel / 4, random.generate());
    ArtworkGradientModel model([time = 8e8 + random.bounded(1e6)] { return time; }, configs);
    model.setImage(cover);
    model.setArea(area);
    return model.scene();
}

/// A blob's opacity by the plain definition: the cone within the area, averaged under a Gaussian.
double blurredCone(const GradientScene& scene, const PlacedBlob& blob, double x, double y) {
    constexpr int reach = 11; // thirds of the deviation, sampled in their middles
    double sum = 0;
    double weights = 0;
    for (int row = -reach; row < reach; ++row) {
        for (int column = -reach; column < reach; ++column) {
            const double dx = (column + 0.5) * blob.deviation / 3;
            const double dy = (row + 0.5) * blob.deviation / 3;
            const double weight =
                std::exp(-(dx * dx + dy * dy) / (2 * blob.deviation * blob.deviation));
            weights += weight;
            if (x + dx >= 0 && x + dx < scene.width && y + dy >= 0 && y + dy < scene.height) {
                const double away = std::hypot(x + dx - blob.x, y + dy - blob.y);
                sum += weight * std::max(1 - away / blob.radius, 0.0);
            }
        }
    }
    return blob.opacity * sum / weights;
}

/// The layers one after another, as they are meant.
double plainColor(const GradientScene& scene, std::size_t part, double x, double y) {
    const double w = scene.width;
    const double h = scene.height;
    const double along = (x * w + y * h) / (w * w + h * h);
    double value = std::lerp(scene.firstColor[part], scene.secondColor[part], along);
    value *= 1 - 0.06 * std::max(1 - std::hypot(x - w / 2, y - h / 2) / 1000, 0.0);
    value *= 1 - 0.08 * (1 - x / w);
    value *= 1 - 0.08 * (1 - y / h);
    for (const PlacedBlob& blob : scene.blobs) {
        const double screen = 1 - (1 - value) * (1 - blob.color[part]);
        value += (screen - value) * blurredCone(scene, blob, x, y);
    }
    return value;
}

TEST(GradientSceneTest, TheClosedFormIsTheLayersOneAfterAnother) {
    for (const quint32 seed : {1U, 2U, 3U}) {
        const GradientScene shown = scene({900, 600}, seed);
        std::vector<GradientVertex> places;
        for (int row = 0; row < 600; row += 33) {
            const float y = static_cast<float>(row) + 0.5F;
            for (const float x : {0.5F, 2.5F, 9.5F, 177.5F, 330.5F, 590.5F, 790.5F, 899.5F})
                places.push_back({x, y, {}});
        }
        shown.color(places);
        double worst = 0;
        for (const auto& [x, y, color] : places) {
            for (const std::size_t part : {0U, 1U, 2U})
                worst = std::max(worst, std::abs(color[part] - plainColor(shown, part, x, y)));
        }
        // In the last pixels before a side the closed form leaves a blob's slope under its blur
        // out.
        EXPECT_LE(worst * 255, 3.5) << "seed " << seed;
    }
}

TEST(GradientMeshTest, TrianglesTileTheArea) {
    GradientMesh mesh;
    for (const QSizeF area : {QSizeF(1200, 800), QSizeF(1, 1), QSizeF(16384, 200),
                              QSizeF(37.5, 1000.25), QSizeF(3840, 2160), QSizeF(0, 5)}) {
        mesh.build(scene(area, 9));
        double covered = 0;
        for (std::size_t i = 0; i < mesh.indices().size(); i += 3) {
            const auto corner = [&](std::size_t k) {
                return mesh.vertices()[mesh.indices()[i + k]];
            };
            const auto [a, b, c] = std::array{corner(0), corner(1), corner(2)};
            const double twice = double{b.x - a.x} * (c.y - a.y) - double{c.x - a.x} * (b.y - a.y);
            EXPECT_GT(twice, 0); // all turn the same way
            covered += twice / 2;
        }
        const double whole = area.width() * area.height();
        EXPECT_NEAR(covered, whole, 1e-4 * whole) << area.width();
        EXPECT_LE(mesh.indices().size() / 3, 40000U); // few, whatever the window
    }
}

} // namespace
