import QtQuick

/// What keeps white text readable on a bright ground: a shadow around everything in `source`, an item
/// that always has a layer. It is drawn anew only when the source changes, and lies below it.
Loader {
    id: shadow

    required property Item source
    /// 0 to 1; without any nothing is drawn.
    required property real strength
    /// Opacity of the source's ink, 0 to 1: fainter ink casts the same shadow. Less than it has makes
    /// the shadow heavier.
    property real ink: 1
    // A size of whole numbers, whatever the checker says.
    // qmllint disable
    readonly property size halfSize: Qt.size(Math.max(1, Math.ceil(width / 2)), Math.max(1, Math.ceil(height / 2)))
    // qmllint enable

    // Made as a whole: an effect doesn't notice that its source gets a layer later on.
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
