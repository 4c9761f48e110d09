#pragma once

#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

/// Shows a picture with rounded corners that fills the item. It is scaled once to its displayed
/// size, so small covers stay crisp, and drawn without a layer.
class PictureItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// A null image shows nothing. The implicit size is the picture's size in pixels.
    Q_PROPERTY(QImage image READ image WRITE setImage NOTIFY imageChanged)
    /// The corner radius in points.
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)

  public:
    explicit PictureItem(QQuickItem* parent = nullptr);

    [[nodiscard]] QImage image() const { return image_; }
    void setImage(const QImage& image);
    [[nodiscard]] double radius() const { return radius_; }
    void setRadius(double radius);

  Q_SIGNALS:
    void imageChanged();
    void radiusChanged();

  protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    void changeTexture();

    QImage image_;
    double radius_ = 0;
    bool isTextureOld_ = true;
};

} // namespace tamsy
