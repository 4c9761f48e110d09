#include "Views/NowPlaying/MovingGradient.h"

#include <QSGGeometryNode>
#include <QSGMaterial>
#include <QSGMaterialShader>

#include <cstring>

namespace tamsy {
namespace {

class Shader : public QSGMaterialShader {
  public:
    Shader() {
        setShaderFileName(VertexStage, QStringLiteral(":/shaders/ArtworkGradient.vert.qsb"));
        setShaderFileName(FragmentStage, QStringLiteral(":/shaders/ArtworkGradient.frag.qsb"));
    }

    bool updateUniformData(RenderState& state, QSGMaterial* /*material*/,
                           QSGMaterial* /*former*/) override {
        if (!state.isMatrixDirty())
            return false;
        const QMatrix4x4 matrix = state.combinedMatrix();
        std::memcpy(state.uniformData()->data(), matrix.constData(), 16 * sizeof(float));
        return true;
    }
};

class Material : public QSGMaterial {
  public:
    [[nodiscard]] QSGMaterialType* type() const override {
        static QSGMaterialType type;
        return &type;
    }
    [[nodiscard]] QSGMaterialShader*
    createShader(QSGRendererInterface::RenderMode /*mode*/) const override {
        return new Shader;
    }
};

const QSGGeometry::AttributeSet& vertexLayout() {
    using Attribute = QSGGeometry::Attribute;
    static const Attribute attributes[] = {
        Attribute::createWithAttributeType(0, 2, QSGGeometry::FloatType,
                                           QSGGeometry::PositionAttribute),
        Attribute::createWithAttributeType(1, 3, QSGGeometry::FloatType,
                                           QSGGeometry::ColorAttribute),
    };
    static const QSGGeometry::AttributeSet layout{2, sizeof(GradientVertex), attributes};
    return layout;
}

class Node : public QSGGeometryNode {
  public:
    Node() : geometry_(vertexLayout(), 0, 0, QSGGeometry::UnsignedIntType) {
        geometry_.setDrawingMode(QSGGeometry::DrawTriangles);
        geometry_.setVertexDataPattern(QSGGeometry::StreamPattern);
        geometry_.setIndexDataPattern(QSGGeometry::StreamPattern);
        setGeometry(&geometry_);
        setMaterial(&material_);
    }

    void take(const GradientMesh& mesh) {
        geometry_.allocate(static_cast<int>(mesh.vertices().size()),
                           static_cast<int>(mesh.indices().size()));
        std::ranges::copy(mesh.vertices(), static_cast<GradientVertex*>(geometry_.vertexData()));
        std::ranges::copy(mesh.indices(), geometry_.indexDataAsUInt());
        markDirty(DirtyGeometry);
    }

  private:
    QSGGeometry geometry_;
    Material material_;
};

} // namespace

MovingGradient::MovingGradient(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void MovingGradient::setModel(ArtworkGradientModel* model) {
    if (model_ == model)
        return;
    if (!model_.isNull())
        model_->disconnect(this);
    model_ = model;
    if (!model_.isNull()) {
        for (const auto change :
             {&ArtworkGradientModel::areaChanged, &ArtworkGradientModel::colorsChanged,
              &ArtworkGradientModel::blobsChanged, &ArtworkGradientModel::isActiveChanged})
            connect(model_, change, this, &QQuickItem::update);
    }
    update();
    Q_EMIT modelChanged();
}

QSGNode* MovingGradient::updatePaintNode(QSGNode* former, UpdatePaintNodeData* /*data*/) {
    if (model_.isNull()) {
        delete former;
        return nullptr;
    }
    auto* node = former != nullptr ? static_cast<Node*>(former) : new Node;
    mesh_.build(model_->scene());
    node->take(mesh_);
    return node;
}

} // namespace tamsy
