#pragma once

#include "Views/Background/ArtworkGradientModel.h"
#include "Views/Background/GradientMesh.h"

#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

/// Draws the background of a model, whose area it covers, for graphics with shaders.
class MovingGradient : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        tamsy::ArtworkGradientModel* model READ model WRITE setModel NOTIFY modelChanged REQUIRED)

  public:
    explicit MovingGradient(QQuickItem* parent = nullptr);

    [[nodiscard]] ArtworkGradientModel* model() const { return model_; }
    void setModel(ArtworkGradientModel* model);

  Q_SIGNALS:
    void modelChanged();

  protected:
    QSGNode* updatePaintNode(QSGNode* former, UpdatePaintNodeData* data) override;

  private:
    QPointer<ArtworkGradientModel> model_;
    GradientMesh mesh_; // the render thread's, while the interface thread waits for it
};

} // namespace tamsy
