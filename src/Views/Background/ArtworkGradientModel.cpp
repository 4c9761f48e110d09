#include "Views/Background/ArtworkGradientModel.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace tamsy {
namespace {

constexpr double wideInterval = 1.0 / 60;   // seconds
constexpr double narrowInterval = 1.0 / 24; // seconds

BlobConfigs randomBlobs() {
    BlobConfigs configs;
    for (std::size_t index = 0; index < configs.size(); ++index)
        configs[index] = BlobConfig::random(static_cast<int>(index));
    return configs;
}

} // namespace

ArtworkGradientModel::ArtworkGradientModel(QObject* parent)
    : ArtworkGradientModel(secondsSinceReferenceDate, randomBlobs(), parent) {}

ArtworkGradientModel::ArtworkGradientModel(Clock clock, const BlobConfigs& blobConfigs,
                                           QObject* parent)
    : QObject(parent),
      clock_(std::move(clock)),
      blobConfigs_(blobConfigs),
      cachedColors_(extractTwoDominantColors({})),
      bubbles_(generateBubbleColors(cachedColors_.first, cachedColors_.second)) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &ArtworkGradientModel::step);
    step();
}

void ArtworkGradientModel::setImage(const QImage& image) {
    if (image_.cacheKey() == image.cacheKey())
        return;
    image_ = image;
    Q_EMIT imageChanged();
    if (image_.isNull())
        return;
    const QByteArray signature = imageSignature(image_);
    if (std::exchange(signature_, signature) == signature)
        return;
    if (!isSeeking_ || !hasColors_)
        updateColors();
}

void ArtworkGradientModel::setIsSeeking(bool isSeeking) {
    if (std::exchange(isSeeking_, isSeeking) == isSeeking)
        return;
    if (!isSeeking_ && !image_.isNull())
        updateColors();
    Q_EMIT isSeekingChanged();
}

void ArtworkGradientModel::setIsFullScreen(bool isFullScreen) {
    if (std::exchange(isFullScreen_, isFullScreen) == isFullScreen)
        return;
    step();
    Q_EMIT isFullScreenChanged();
}

void ArtworkGradientModel::setIsActive(bool isActive) {
    if (std::exchange(isActive_, isActive) == isActive)
        return;
    step();
    Q_EMIT isActiveChanged();
}

void ArtworkGradientModel::setCanBeSeen(bool canBeSeen) {
    if (std::exchange(canBeSeen_, canBeSeen) == canBeSeen)
        return;
    step();
    Q_EMIT canBeSeenChanged();
}

void ArtworkGradientModel::setArea(QSizeF area) {
    if (std::exchange(area_, area) == area)
        return;
    updateTime();
    Q_EMIT areaChanged();
}

double ArtworkGradientModel::textShadowStrength() const {
    return tamsy::textShadowStrength(cachedColors_.first, cachedColors_.second, bubbles_);
}

double ArtworkGradientModel::interval() const {
    return isFullScreen_ ? wideInterval : narrowInterval;
}

GradientScene ArtworkGradientModel::scene() const {
    GradientScene scene{.width = static_cast<float>(area_.width()),
                        .height = static_cast<float>(area_.height()),
                        .firstColor = cachedColors_.first.components(),
                        .secondColor = cachedColors_.second.components(),
                        .blobs = {}};
    for (std::size_t index = 0; index < scene.blobs.size(); ++index) {
        const BlobConfig& config = blobConfigs_[index];
        scene.blobs[index] = animatedBlob(config, bubbles_[index], config.speed * time_, area_);
        if (!isActive_)
            scene.blobs[index].opacity = 0;
    }
    return scene;
}

void ArtworkGradientModel::updateColors() {
    const auto colors = extractTwoDominantColors(image_);
    if (std::exchange(hasColors_, true) && colors == cachedColors_)
        return;
    cachedColors_ = colors;
    bubbles_ = generateBubbleColors(colors.first, colors.second);
    Q_EMIT colorsChanged();
}

void ArtworkGradientModel::updateTime() {
    const double time = quantizedTime(clock_(), interval());
    if (std::exchange(time_, time) != time)
        Q_EMIT blobsChanged();
}

void ArtworkGradientModel::step() {
    if (!isActive_ || !canBeSeen_) {
        timer_.stop();
        return;
    }
    updateTime();
    const double now = clock_();
    const double untilNext = quantizedTime(now, interval()) + interval() - now;
    // Rounded up, since a timer that is early would repeat the same step.
    timer_.start(std::chrono::milliseconds(std::clamp(std::lround(std::ceil(untilNext * 1000)), 1L,
                                                      std::lround(interval() * 1000) + 1)));
}

} // namespace tamsy
