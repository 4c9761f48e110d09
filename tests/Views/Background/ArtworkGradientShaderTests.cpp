#include "Views/Background/ArtworkGradientModel.h"

#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace tamsy;

namespace {

constexpr QSize area{900, 600};

struct Pixel {
    double red;
    double green;
    double blue;
};

double at(const Pixel& pixel, int part) {
    return part == 0 ? pixel.red : part == 1 ? pixel.green : pixel.blue;
}

/// A blob's opacity by the plain definition: the cone within the area, averaged under a Gaussian.
double blurredCone(QPointF place, const QVector4D& blob) {
    const double deviation = blob.w();
    constexpr int reach = 11; // thirds of the deviation, sampled in their middles
    double sum = 0;
    double weights = 0;
    for (int row = -reach; row < reach; ++row) {
        for (int column = -reach; column < reach; ++column) {
            const double dx = (column + 0.5) * deviation / 3;
            const double dy = (row + 0.5) * deviation / 3;
            const double weight = std::exp(-(dx * dx + dy * dy) / (2 * deviation * deviation));
            weights += weight;
            const QPointF there = place + QPointF(dx, dy);
            if (QRectF({}, QSizeF(area)).contains(there))
                sum +=
                    weight *
                    std::max(1 - std::hypot(there.x() - blob.x(), there.y() - blob.y()) / blob.z(),
                             0.0);
        }
    }
    return sum / weights;
}

/// The layers one after another, as they are meant.
Pixel reference(const ArtworkGradientModel& model, QPointF place, bool withBlobs) {
    const QVector4D blobs[] = {model.blob0(), model.blob1(), model.blob2(),
                               model.blob3(), model.blob4(), model.blob5()};
    const QVector4D colors[] = {model.blobColor0(), model.blobColor1(), model.blobColor2(),
                                model.blobColor3(), model.blobColor4(), model.blobColor5()};
    const double w = area.width();
    const double h = area.height();
    const double along = (place.x() * w + place.y() * h) / (w * w + h * h);
    const double fromCenter = std::hypot(place.x() - w / 2, place.y() - h / 2);
    const QColor a = model.firstColor();
    const QColor b = model.secondColor();
    const auto part = [&](double first, double second, int index) {
        double value = first + (second - first) * along;
        value *= 1 - 0.06 * (1 - fromCenter / 1000);
        value *= 1 - 0.08 * (1 - place.x() / w);
        value *= 1 - 0.08 * (1 - place.y() / h);
        for (std::size_t i = 0; i < std::size(blobs) && withBlobs; ++i) {
            const double opacity = blurredCone(place, blobs[i]) * colors[i].w();
            const double screen = 1 - (1 - value) * (1 - colors[i][index]);
            value += (screen - value) * opacity;
        }
        return value;
    };
    return {part(a.redF(), b.redF(), 0), part(a.greenF(), b.greenF(), 1),
            part(a.blueF(), b.blueF(), 2)};
}

constexpr auto source = R"(
import QtQuick
ShaderEffect {
    required property QtObject model
    property real glow: model.isActive ? 1 : 0
    property size area: Qt.size(width, height)
    property color firstColor: model.firstColor
    property color secondColor: model.secondColor
    property vector4d blob0: model.blob0
    property vector4d blob1: model.blob1
    property vector4d blob2: model.blob2
    property vector4d blob3: model.blob3
    property vector4d blob4: model.blob4
    property vector4d blob5: model.blob5
    property vector4d blobColor0: model.blobColor0
    property vector4d blobColor1: model.blobColor1
    property vector4d blobColor2: model.blobColor2
    property vector4d blobColor3: model.blobColor3
    property vector4d blobColor4: model.blobColor4
    property vector4d blobColor5: model.blobColor5
    vertexShader: "qrc:/ArtworkGradient.vert.qsb"
    fragmentShader: "qrc:/ArtworkGradient.frag.qsb"
})";

TEST(ArtworkGradientShaderTest, OnePassDrawsTheLayersOneAfterAnother) {
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

    QQuickView view;
    QQmlComponent component(view.engine());
    component.setData(source, QUrl());
    auto* effect = qobject_cast<QQuickItem*>(component.createWithInitialProperties(
        {{QStringLiteral("model"), QVariant::fromValue(&model)}}));
    ASSERT_NE(effect, nullptr) << component.errorString().toStdString();
    view.setContent(QUrl(), &component, effect);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.resize(area);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));

    for (const bool withBlobs : {true, false}) {
        model.setIsActive(withBlobs);
        const QImage drawn = view.grabWindow();
        ASSERT_EQ(drawn.size(), area);
        double worst = 0;
        for (int y = 1; y < area.height(); y += 33) {
            for (const int x : {0, 2, 9, 83, 177, 270, 330, 450, 590, 670, 790, 899}) {
                const Pixel expected = reference(model, {x + 0.5, y + 0.5}, withBlobs);
                const QColor color = drawn.pixelColor(x, y);
                const Pixel seen{color.redF(), color.greenF(), color.blueF()};
                for (const int part : {0, 1, 2})
                    worst = std::max(worst, std::abs(at(seen, part) - at(expected, part)));
            }
        }
        // Half a step of rounding, half a step of noise and, in the last pixels before a side, the
        // slope of a blob under its blur, which the closed form leaves out.
        EXPECT_LE(worst * 255, 3.5) << "with blobs: " << withBlobs;
    }
}

} // namespace
