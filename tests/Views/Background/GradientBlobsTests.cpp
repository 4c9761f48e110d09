#include "Views/Background/ArtworkGradientModel.h"
#include "Views/Background/GradientBlobs.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <tuple>

using namespace tamsy;

namespace {

BlobConfig blob(BlobStyle style, QPointF center, QSizeF offset) {
    return {style, center, offset, 0.2, 0.8, 0.05, 6};
}

TEST(GradientBlobsTest, TheClockAloneSaysWhereABlobStands) {
    const QSizeF wide(1200, 800);
    const QPointF center(0.5, 0.4);
    const QSizeF offset(20, -10);
    const std::tuple<BlobConfig, QSizeF, double, QPointF> rows[] = {
        {blob(CircleStyle{1.25, 0.75, false}, center, offset), wide, 0.3, {323.015152, 507.537668}},
        {blob(CircleStyle{1.25, 0.75, true}, center, offset), wide, 0.3, {916.984848, 112.462332}},
        {blob(VerticalStyle(), center, offset), wide, 0.1, {620, 427.557050}},
        {blob(HorizontalStyle(), center, offset), wide, 0.1, {796.335576, 349.684588}},
        // A quarter of a century after the reference date it must still move smoothly.
        {blob(CircleStyle{1.1, 0.9, false}, {0.5, 0.5}, {0, 0}),
         {999, 700},
         0.0731 * 817000000.25,
         {846.364610, 368.052793}},
        {blob(VerticalStyle(), {0.8, 0.8}, {200, 150}), {400, 300}, 0.1, {368, 276}}, // the margin
        {blob(HorizontalStyle(), {0.2, 0.2}, {-200, -150}), {0, 0}, 0.1, {0, 0}},
    };
    for (const auto& [config, area, t, place] : rows) {
        EXPECT_NEAR(blobPosition(config, area, t).x(), place.x(), 1e-3);
        EXPECT_NEAR(blobPosition(config, area, t).y(), place.y(), 1e-3);
    }
    EXPECT_FLOAT_EQ(animatedBlob(std::get<0>(rows[0]), {}, 0, wide).radius, 320);
    EXPECT_DOUBLE_EQ(quantizedTime(10.99 / 24, 1.0 / 24), 10.0 / 24);
    EXPECT_DOUBLE_EQ(quantizedTime(-0.01, 0.5), -0.5);
}

class ArtworkGradientModelTest : public testing::Test {
  protected:
    ArtworkGradientModelTest() { model.setArea({1200, 800}); }

    static QImage cover(QColor color) {
        QImage image(10, 10, QImage::Format_RGB32);
        image.fill(color);
        return image;
    }

    ArtworkGradientModel model{[] { return 8e8; },
                               {blob(VerticalStyle(), {0.5, 0.5}, {0, 0}), {}, {}, {}, {}, {}}};
    QSignalSpy colors{&model, &ArtworkGradientModel::colorsChanged};
};

TEST_F(ArtworkGradientModelTest, ColorsFollowTheCoverButNotDuringASeek) {
    EXPECT_EQ(model.firstColor(), QColor::fromRgbF(0.3F, 0.3F, 0.3F));
    model.setIsSeeking(true);
    model.setImage(cover(QColor(0x33, 0x66, 0x99))); // the first one comes at once
    EXPECT_EQ(colors.count(), 1);
    EXPECT_EQ(model.firstColor().name(), u"#0e5ead"_qs);
    model.setImage(cover(Qt::darkRed));
    EXPECT_EQ(colors.count(), 1);
    model.setIsSeeking(false);
    EXPECT_EQ(colors.count(), 2);
    const QColor red = model.firstColor();
    model.setImage(cover(Qt::darkRed)); // another picture of the same look
    model.setImage({});
    model.setIsSeeking(true);
    model.setIsSeeking(false);
    EXPECT_EQ(colors.count(), 2);
    EXPECT_EQ(model.firstColor(), red);
    EXPECT_NEAR(model.scene().blobs[0].opacity, 0.8 * 0.9, 1e-6);
}

TEST(ArtworkGradientTimerTest, StepsComeAtTheFormsRateAndOnlyWhileItCanBeSeen) {
    BlobConfigs configs;
    configs.fill(blob(VerticalStyle(), {0.5, 0.5}, {0, 0})); // never held at a margin
    ArtworkGradientModel model(secondsSinceReferenceDate, configs);
    model.setArea({1200, 800});
    QSignalSpy steps(&model, &ArtworkGradientModel::blobsChanged);
    const auto stepsIn = [&](int milliseconds) {
        steps.clear();
        QElapsedTimer timer;
        timer.start();
        EXPECT_TRUE(QTest::qWaitFor([&] { return timer.hasExpired(milliseconds); }));
        return static_cast<int>(steps.count());
    };
    // A busy machine may miss steps; it never makes more.
    EXPECT_LE(stepsIn(500), 13);
    EXPECT_GT(steps.count(), 0);
    model.setIsFullScreen(true);
    EXPECT_LE(stepsIn(500), 31);
    EXPECT_GT(steps.count(), 0);
    model.setIsActive(false);
    EXPECT_EQ(stepsIn(200), 0);
    const PlacedBlob former = model.scene().blobs[0];
    EXPECT_EQ(former.opacity, 0);
    model.setIsActive(true); // stands at once where the clock puts it
    EXPECT_NE(model.scene().blobs[0].y, former.y);
}

} // namespace
