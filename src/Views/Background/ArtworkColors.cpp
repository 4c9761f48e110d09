#include "Views/Background/ArtworkColors.h"

#include "Utils/FNV1a.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace tamsy {
namespace {

constexpr QSize sampledSize{24, 24};
constexpr int clusteringRounds = 5;
constexpr double nearlyWhite = 0.98;
constexpr double nearlyBlack = 0.02;
constexpr double closeColors = 0.1; // two colours at a smaller distance count as one
constexpr double degrees = 1.0 / 360;

/// Hue, saturation and brightness, each 0 to 1; the hue of grey is 0.
struct HueColor {
    double hue = 0;
    double saturation = 0;
    double brightness = 0;
};

HueColor toHue(const ArtworkColor& color) {
    const auto [lowest, highest] = std::minmax({color.red, color.green, color.blue});
    const double range = highest - lowest;
    if (range <= 0)
        return {0, 0, highest};
    double sector = 0; // 0 to 6: red, yellow, green, cyan, blue, magenta
    if (highest == color.red)
        sector = (color.green - color.blue) / range + (color.green < color.blue ? 6 : 0);
    else if (highest == color.green)
        sector = (color.blue - color.red) / range + 2;
    else
        sector = (color.red - color.green) / range + 4;
    return {sector / 6, range / highest, highest};
}

/// One component of the colour; `shift` says which, in sectors of the hue circle.
double channel(const HueColor& color, double shift) {
    const double sector = std::fmod(shift + color.hue * 6, 6);
    const double distance = std::clamp(std::min(sector, 4 - sector), 0.0, 1.0);
    return color.brightness * (1 - color.saturation * distance);
}

ArtworkColor fromHue(const HueColor& color) {
    return {channel(color, 5), channel(color, 3), channel(color, 1)};
}

double distance(const ArtworkColor& a, const ArtworkColor& b) {
    return std::hypot(a.red - b.red, a.green - b.green, a.blue - b.blue);
}

bool counts(const ArtworkColor& color) {
    const auto [lowest, highest] = std::minmax({color.red, color.green, color.blue});
    return highest < nearlyWhite && lowest > nearlyBlack;
}

std::vector<ArtworkColor> samples(const QImage& pixels) {
    std::vector<ArtworkColor> result;
    for (int y = 0; y < pixels.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(pixels.constScanLine(y));
        for (int x = 0; x < pixels.width(); ++x) {
            const ArtworkColor color{qRed(row[x]) / 255.0, qGreen(row[x]) / 255.0,
                                     qBlue(row[x]) / 255.0};
            if (counts(color))
                result.push_back(color);
        }
    }
    if (result.empty())
        result.push_back({0.4, 0.4, 0.4});
    return result;
}

/// The mean of a group of samples.
struct Mean {
    ArtworkColor sum;
    double count = 0;

    void add(const ArtworkColor& color) {
        sum = {sum.red + color.red, sum.green + color.green, sum.blue + color.blue};
        ++count;
    }

    [[nodiscard]] ArtworkColor valueOr(const ArtworkColor& center) const {
        return count > 0 ? ArtworkColor{sum.red / count, sum.green / count, sum.blue / count}
                         : center;
    }
};

std::pair<ArtworkColor, ArtworkColor> clustered(const std::vector<ArtworkColor>& colors) {
    ArtworkColor first = colors.front();
    ArtworkColor second = *std::ranges::max_element(
        colors, {}, [&first](const ArtworkColor& color) { return distance(first, color); });
    for (int round = 0; round < clusteringRounds; ++round) {
        Mean nearFirst;
        Mean nearSecond;
        for (const ArtworkColor& color : colors) {
            const bool isFirst = distance(color, first) <= distance(color, second);
            (isFirst ? nearFirst : nearSecond).add(color);
        }
        first = nearFirst.valueOr(first);
        second = nearSecond.valueOr(second);
    }
    return {first, second};
}

double linearLight(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

} // namespace

ArtworkColor ArtworkColor::darker() const {
    constexpr double remaining = 0.6;
    return {red * remaining, green * remaining, blue * remaining};
}

ArtworkColor ArtworkColor::brighterBy(double amount) const {
    HueColor color = toHue(*this);
    color.brightness = std::min(color.brightness + amount, 1.0);
    return fromHue(color);
}

ArtworkColor ArtworkColor::rotateHue(double turn) const {
    HueColor color = toHue(*this);
    color.hue += turn;
    if (color.hue < 0)
        color.hue += 1;
    if (color.hue > 1)
        color.hue -= 1;
    return fromHue(color);
}

ArtworkColor ArtworkColor::saturateBy(double amount) const {
    HueColor color = toHue(*this);
    color.saturation = std::clamp(color.saturation + amount, 0.0, 1.0);
    return fromHue(color);
}

double ArtworkColor::luminance() const {
    return 0.2126 * linearLight(red) + 0.7152 * linearLight(green) + 0.0722 * linearLight(blue);
}

std::array<float, 3> ArtworkColor::components() const {
    return {static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue)};
}

QColor ArtworkColor::toColor() const {
    const auto [r, g, b] = components();
    return QColor::fromRgbF(r, g, b);
}

std::pair<ArtworkColor, ArtworkColor> extractTwoDominantColors(const QImage& image) {
    // Premultiplied in between, so that transparent pixels become black.
    const QImage pixels = resized(image, sampledSize)
                              .convertToFormat(QImage::Format_ARGB32_Premultiplied)
                              .convertToFormat(QImage::Format_ARGB32);
    if (pixels.isNull()) {
        constexpr ArtworkColor gray{0.5, 0.5, 0.5};
        return {gray.darker(), gray.darker().darker()};
    }
    auto [first, second] = clustered(samples(pixels));
    if (distance(first, second) < closeColors)
        second = first.rotateHue(30 * degrees);
    const auto vivid = [](const ArtworkColor& color) {
        return color.brighterBy(0.08).saturateBy(0.25);
    };
    return {vivid(first), vivid(second)};
}

BubbleColors generateBubbleColors(const ArtworkColor& a, const ArtworkColor& b) {
    const auto bubble = [](const ArtworkColor& color, double turn) {
        return color.rotateHue(turn * degrees).brighterBy(0.22).saturateBy(-0.1);
    };
    return {bubble(a, -50), bubble(a, -22), bubble(a, 8),
            bubble(b, -8),  bubble(b, 22),  bubble(b, 50)};
}

QByteArray imageSignature(const QImage& image) {
    const QByteArray shape =
        QByteArray::number(image.width()) + 'x' + QByteArray::number(image.height());
    const QImage pixels = image.convertToFormat(QImage::Format_RGBA8888);
    if (pixels.isNull())
        return "sig:" + shape + '#' + QByteArray::number(image.cacheKey());
    FNV1a hash;
    hash.add(shape); // the same bytes may be another picture in another shape
    hash.add({pixels.constBits(), pixels.sizeInBytes()});
    return hash.text() + '-' + QByteArray::number(pixels.sizeInBytes());
}

QImage resized(const QImage& image, QSize size) {
    return image.isNull() ? image
                          : image.scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation);
}

double textShadowStrength(const ArtworkColor& a, const ArtworkColor& b,
                          const BubbleColors& bubbles) {
    constexpr double opacity = 0.8; // mean opacity of a blob's centre
    const auto screened = [](double base, double light) {
        return 1 - (1 - base) * (1 - opacity * light);
    };
    double brightest = 0;
    for (const ArtworkColor& base : {a, b}) {
        for (const ArtworkColor& bubble : bubbles) {
            const ArtworkColor lit{screened(base.red, bubble.red),
                                   screened(base.green, bubble.green),
                                   screened(base.blue, bubble.blue)};
            brightest = std::max(brightest, lit.luminance());
        }
    }
    constexpr double readable = 0.05; // max luminance on which white text needs no shadow
    constexpr double range = 0.3;     // of luminance, from no shadow to the full one
    return std::clamp((brightest - readable) / range, 0.0, 1.0);
}

} // namespace tamsy
