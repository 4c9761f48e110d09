#include "Views/Thumbnail.h"

#include <QPointer>

#include <utility>

namespace tamsy {
namespace {

constexpr auto variant = ArtworkLoader::Variant::thumb64;

} // namespace

Thumbnail::~Thumbnail() {
    disappear();
}

void Thumbnail::setAddress(const QString& address) {
    const FileURL url = FileURL::fromAbsoluteString(address.toUtf8()).value_or(FileURL());
    if (url_ == url)
        return;
    disappear();
    url_ = url;
    setImage({});
    Q_EMIT addressChanged();
    appear();
}

void Thumbnail::setIsShown(bool isShown) {
    if (std::exchange(isShown_, isShown) == isShown)
        return;
    if (isShown)
        appear();
    else
        disappear();
    Q_EMIT isShownChanged();
}

void Thumbnail::appear() {
    if (!isShown_ || url_.isEmpty() || hasImage())
        return;
    taskKey_ = ArtworkLoader::shared().load(
        url_, variant, [thumbnail = QPointer(this), url = url_](const QImage& image) {
            if (thumbnail.isNull() || !(thumbnail->url_ == url))
                return; // the row shows another track by now
            thumbnail->taskKey_.clear();
            thumbnail->setImage(image);
        });
    if (hasImage())
        taskKey_.clear(); // it was answered within the call
}

void Thumbnail::disappear() {
    if (!std::exchange(taskKey_, {}).isEmpty())
        ArtworkLoader::shared().cancel(url_, variant);
}

void Thumbnail::setImage(const QImage& image) {
    if (loadedImage_.cacheKey() == image.cacheKey())
        return;
    loadedImage_ = image;
    Q_EMIT imageChanged();
}

} // namespace tamsy
