#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

/// The background without blobs, for rendering without shaders.
class StaticGradient : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// From the top left corner to the bottom right one.
    Q_PROPERTY(QColor firstColor MEMBER firstColor_ NOTIFY colorsChanged)
    Q_PROPERTY(QColor secondColor MEMBER secondColor_ NOTIFY colorsChanged)

  public:
    explicit StaticGradient(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

  Q_SIGNALS:
    void colorsChanged();

  private:
    QColor firstColor_;
    QColor secondColor_;
};

} // namespace tamsy
