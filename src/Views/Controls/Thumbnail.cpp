#include "Views/Controls/Thumbnail.h"

#include <QHash>
#include <QList>
#include <QPointer>

#include <utility>

namespace tamsy {
namespace {

constexpr auto variant = ArtworkLoader::Variant::thumb64;

/// The rows that wait for each cover. While a list changes, a track's old and new row both wait,
/// but the loader has one request per cover: its answer is for both, and only the last row to leave
/// cancels it.
using WaitingRows = QHash<FileURL, QList<QPointer<Thumbnail>>>;
WaitingRows& waitingRows() {
    static WaitingRows rows;
    return rows;
}

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
    waitingRows()[url_].append(this);
    taskKey_ = ArtworkLoader::shared().load(url_, variant, [url = url_](const QImage& image) {
        const auto rows = waitingRows().take(url);
        for (const QPointer<Thumbnail>& row : rows) {
            if (row.isNull())
                continue;
            row->taskKey_.clear();
            row->setImage(image);
        }
    });
    if (hasImage())
        taskKey_.clear(); // answered during the call
}

void Thumbnail::disappear() {
    if (std::exchange(taskKey_, {}).isEmpty())
        return;
    const auto rows = waitingRows().find(url_);
    rows->removeOne(this);
    if (!rows->isEmpty())
        return;
    waitingRows().erase(rows);
    ArtworkLoader::shared().cancel(url_, variant);
}

void Thumbnail::setImage(const QImage& image) {
    if (loadedImage_.cacheKey() == image.cacheKey())
        return;
    loadedImage_ = image;
    Q_EMIT imageChanged();
}

} // namespace tamsy
