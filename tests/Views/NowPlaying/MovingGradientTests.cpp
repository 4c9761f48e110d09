#include "Views/NowPlaying/MovingGradient.h"

#include <QQuickWindow>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>

using namespace tamsy;

namespace {

TEST(MovingGradientTest, EachPixelIsTheScenes) {
    constexpr QSize area{900, 600};
    QImage cover(2, 1, QImage::Format_RGB32);
    cover.setPixelColor(0, 0, QColor(200, 60, 40));
    cover.setPixelColor(1, 0, QColor(40, 80, 160));
    QRandomGenerator random(3);
    BlobConfigs configs;
    for (int index = 0; index < 6; ++index)
        configs[static_cast<std::size_t>(index)] = BlobConfig::random(index, random);
    configs[0].originOffset = {-400, 0}; // one at the margin, where its blur meets the side
    ArtworkGradientModel model([] { return 8e8; }, configs);
    model.setImage(cover);
    model.setArea(area);

    QQuickWindow window;
    MovingGradient gradient(window.contentItem());
    gradient.setSize(area);
    gradient.setModel(&model);
    window.resize(area);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

    for (const bool withBlobs : {true, false}) {
        model.setIsActive(withBlobs);
        const QImage drawn = window.grabWindow().convertToFormat(QImage::Format_RGB32);
        ASSERT_EQ(drawn.size(), area);
        std::vector<GradientVertex> pixels;
        for (int y = 0; y < area.height(); ++y) {
            for (int x = 0; x < area.width(); ++x)
                pixels.push_back({static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F, {}});
        }
        model.scene().color(pixels);
        float worst = 0;
        for (const GradientVertex& pixel : pixels) {
            const QRgb seen = drawn.pixel(static_cast<int>(pixel.x), static_cast<int>(pixel.y));
            const int parts[] = {qRed(seen), qGreen(seen), qBlue(seen)};
            for (std::size_t part = 0; part < 3; ++part)
                worst = std::max(
                    worst, std::abs(static_cast<float>(parts[part]) - 255 * pixel.color[part]));
        }
        // Two levels between the corners, half a one of noise and half a one of rounding.
        EXPECT_LE(worst, 3) << "with blobs: " << withBlobs;
    }
}

} // namespace
