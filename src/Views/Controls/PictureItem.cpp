#include "Views/Controls/PictureItem.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <utility>

namespace tamsy {
namespace {

/// Pictures up to this side, in pixels, share a texture atlas, so that rows are drawn in one batch.
constexpr int maxSharedSide = 128;

/// The picture scaled to `size`, in pixels, with rounded corners.
QImage rounded(const QImage& image, QSize size, double radius) {
    QImage scaled = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (radius <= 0)
        return scaled;
    QImage result(size, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(scaled);
    painter.drawRoundedRect(QRectF(result.rect()), radius, radius);
    return result;
}

} // namespace

PictureItem::PictureItem(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void PictureItem::setImage(const QImage& image) {
    if (image_.cacheKey() == image.cacheKey())
        return;
    image_ = image;
    setImplicitSize(image.width(), image.height());
    changeTexture();
    Q_EMIT imageChanged();
}

void PictureItem::setRadius(double radius) {
    if (std::exchange(radius_, radius) == radius)
        return;
    changeTexture();
    Q_EMIT radiusChanged();
}

QSGNode* PictureItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    const double scale = window()->effectiveDevicePixelRatio();
    const QSize size = (QSizeF(width(), height()) * scale).toSize();
    if (image_.isNull() || size.isEmpty()) {
        delete node;
        isTextureOld_ = true;
        return nullptr;
    }
    auto* picture = static_cast<QSGImageNode*>(node);
    if (picture == nullptr) {
        picture = window()->createImageNode();
        picture->setOwnsTexture(true);
        picture->setFiltering(QSGTexture::Linear);
    }
    if (std::exchange(isTextureOld_, false) || picture->texture() == nullptr) {
        const bool isShared = size.width() <= maxSharedSide && size.height() <= maxSharedSide;
        picture->setTexture(window()->createTextureFromImage(
            rounded(image_, size, radius_ * scale),
            isShared ? QQuickWindow::TextureCanUseAtlas : QQuickWindow::CreateTextureOptions()));
    }
    picture->setRect(boundingRect());
    return picture;
}

void PictureItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        changeTexture();
}

void PictureItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged)
        changeTexture();
}

void PictureItem::changeTexture() {
    isTextureOld_ = true;
    update();
}

} // namespace tamsy
