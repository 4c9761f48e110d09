import QtQuick

/// The soft shadow of a surface with rounded corners, which fills the parent. Without shaders there is
/// no shadow.
ShaderEffect {
    id: shadow

    /// The blur's size, twice its standard deviation, in points.
    required property real blur
    property real strength: 0.5
    property real radius: 12
    property real offset: 0
    readonly property real deviation: blur / 2
    readonly property real margin: Math.ceil(1.5 * blur)
    readonly property size box: Qt.size(parent?.width ?? 0, parent?.height ?? 0)

    x: -margin
    y: -margin + offset
    width: box.width + 2 * margin
    height: box.height + 2 * margin
    // Cached, since what is below may change with every frame.
    layer.enabled: visible
    visible: GraphicsInfo.api !== GraphicsInfo.Software
    fragmentShader: "qrc:/shaders/RoundedShadow.frag.qsb"
}
