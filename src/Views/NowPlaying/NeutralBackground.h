#pragma once

#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

/// The background when there is no cover.
class NeutralBackground : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

  public:
    using QQuickPaintedItem::QQuickPaintedItem;

    void paint(QPainter* painter) override;
};

} // namespace tamsy
