#include "Views/Background/ArtworkColors.h"

#include <QPainter>
#include <gtest/gtest.h>

#include <tuple>

using namespace tamsy;

// The expected numbers come from another implementation of HSB colours.
namespace {

void expectNear(const ArtworkColor& color, const ArtworkColor& expected, const char* what = "") {
    constexpr double tolerance = 1e-6;
    EXPECT_NEAR(color.red, expected.red, tolerance) << what;
    EXPECT_NEAR(color.green, expected.green, tolerance) << what;
    EXPECT_NEAR(color.blue, expected.blue, tolerance) << what;
}

QImage flat(QColor color, QSize size = {200, 100}) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

QImage twoTone(QColor left, QColor right) {
    QImage image = flat(left);
    QPainter(&image).fillRect(100, 0, 100, 100, right);
    return image;
}

TEST(ArtworkColorsTest, ACoverGivesTwoColors) {
    QImage whiteCorner = twoTone(QColor(200, 40, 40), QColor(40, 60, 180));
    QPainter(&whiteCorner).fillRect(0, 0, 50, 50, Qt::white);
    QImage unseen = flat(QColor(200, 40, 40, 0));
    QPainter(&unseen).fillRect(0, 0, 10, 100, QColor(0x33, 0x66, 0x99));
    const ArtworkColor quietGray{0.48, 0.36, 0.36};
    const ArtworkColor red{0.864314, 0, 0};
    const ArtworkColor blue{0, 0.112269, 0.785882};
    const ArtworkColor slate{0.056667, 0.368333, 0.68};
    const ArtworkColor turnedSlate{0.056667, 0.056667, 0.68};
    const std::tuple<const char*, QImage, ArtworkColor, ArtworkColor> rows[] = {
        {"none", {}, {0.3, 0.3, 0.3}, {0.18, 0.18, 0.18}},
        {"one flat color", flat(QColor(0x33, 0x66, 0x99)), slate, turnedSlate},
        {"one pixel", flat(QColor(0x33, 0x66, 0x99), {1, 1}), slate, turnedSlate},
        {"two tones", twoTone(QColor(200, 40, 40), QColor(40, 60, 180)), red, blue},
        {"two tones, other way", twoTone(QColor(40, 60, 180), QColor(200, 40, 40)), blue, red},
        {"white does not count", whiteCorner, red, blue},
        {"what can't be seen does not count", unseen, slate, turnedSlate},
        {"white", flat(Qt::white), quietGray, quietGray},
        {"black", flat(QColor(5, 5, 5)), quietGray, quietGray},
        {"one part at its end", flat(QColor(251, 100, 100)), quietGray, quietGray},
    };
    for (const auto& [what, cover, first, second] : rows) {
        const auto found = extractTwoDominantColors(cover);
        expectNear(found.first, first, what);
        expectNear(found.second, second, what);
    }
}

TEST(ArtworkColorsTest, SixBubblesNeighbourTheTwoColors) {
    const BubbleColors bubbles = generateBubbleColors({0.8, 0.3, 0.2}, {0.1, 0.4, 0.6});
    const BubbleColors expected{{{1, 0.35, 0.783333},
                                 {1, 0.35, 0.48},
                                 {1, 0.545, 0.35},
                                 {0.218667, 0.659644, 0.82},
                                 {0.218667, 0.358978, 0.82},
                                 {0.358978, 0.218667, 0.82}}};
    for (std::size_t index = 0; index < bubbles.size(); ++index)
        expectNear(bubbles[index], expected[index]);
}

TEST(ArtworkColorsTest, SignaturesTellPicturesApart) {
    const QImage image = flat(Qt::red, {8, 2});
    EXPECT_EQ(imageSignature(image), imageSignature(image.convertToFormat(QImage::Format_RGB32)));
    EXPECT_NE(imageSignature(image), imageSignature(flat(Qt::red, {4, 4})));
    QImage other = image;
    other.setPixelColor(7, 1, QColor(254, 0, 0));
    EXPECT_NE(imageSignature(image), imageSignature(other));
}

TEST(ArtworkColorsTest, TheShadowGrowsWithTheBrightestGround) {
    const auto strength = [](double ground, double glow) {
        const ArtworkColor dark{ground, ground, ground};
        const ArtworkColor lit{glow, glow, glow};
        return textShadowStrength(dark, dark, {dark, dark, lit, dark, dark, dark});
    };
    EXPECT_EQ(strength(0.05, 0.1), 0);
    EXPECT_NEAR(strength(0.1, 0.5), (0.178868 - 0.05) / 0.3, 1e-5); // 0.46 where the blob is
    EXPECT_EQ(strength(0.1, 0.9), 1);
}

} // namespace
