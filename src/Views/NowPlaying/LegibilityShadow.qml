import QtQuick

/// Keeps white text readable on a bright background: a shadow below everything in `source`, an item
/// that always has a layer. Redrawn only when the source changes.
Loader {
    id: shadow

    required property Item source
    /// 0 to 1; at 0 nothing is drawn.
    required property real strength
    /// The opacity of the source's text, 0 to 1, so that faint text casts the same shadow. A smaller
    /// value makes the shadow heavier.
    property real ink: 1
    // The linter doesn't know that `size` converts to a `QSize`.
    // qmllint disable
    readonly property size halfSize: Qt.size(Math.max(1, Math.ceil(width / 2)), Math.max(1, Math.ceil(height / 2)))
    // qmllint enable

    // Loaded as a whole: an effect doesn't notice when its source gets a layer later.
    active: strength > 0 && GraphicsInfo.api !== GraphicsInfo.Software
    sourceComponent: Item {
        ShaderEffect {
            id: spread

            readonly property Item source: shadow.source
            readonly property point texelStep: Qt.point(1 / shadow.halfSize.width, 0)

            visible: false
            anchors.fill: parent
            blending: false
            layer.enabled: true
            layer.smooth: true
            layer.textureSize: shadow.halfSize
            fragmentShader: "qrc:/shaders/ShadowSpread.frag.qsb"
        }
        ShaderEffect {
            id: cast

            readonly property Item source: spread
            readonly property real strength: shadow.strength
            readonly property real ink: shadow.ink
            readonly property point texelStep: Qt.point(0, 1 / shadow.halfSize.height)

            visible: false
            anchors.fill: parent
            blending: false
            layer.enabled: true
            layer.smooth: true
            layer.textureSize: shadow.halfSize
            fragmentShader: "qrc:/shaders/ShadowCast.frag.qsb"
        }
        ShaderEffect {
            readonly property Item source: shadow.source
            readonly property Item blurred: cast

            anchors.fill: parent
            layer.enabled: true
            fragmentShader: "qrc:/shaders/ShadowKnockout.frag.qsb"
        }
    }
}
