import QtQuick

/// A thin translucent material: what is below shows through, blurred if the graphics API has shaders.
Item {
    id: material

    required property Item backdrop
    readonly property bool blurs: GraphicsInfo.api !== GraphicsInfo.Software
    readonly property int scale: 4

    ShaderEffectSource {
        id: source

        visible: false
        sourceItem: material.blurs ? material.backdrop : null
        sourceRect: Qt.rect(0, material.backdrop.height - material.height, material.width, material.height)
        // The linter doesn't know that `size` converts to a `QSize`.
        // qmllint disable
        textureSize: Qt.size(Math.ceil(material.width / material.scale), Math.ceil(material.height / material.scale))
        // qmllint enable
        width: material.width
        height: material.height
        smooth: true
    }
    ShaderEffect {
        id: horizontal

        property var source: source
        property point texelStep: Qt.point(material.scale / Math.max(1, material.width), 0)

        visible: false
        width: material.width
        height: material.height
        fragmentShader: "qrc:/shaders/Blur.frag.qsb"
        layer.enabled: material.blurs
        layer.smooth: true
        layer.textureSize: source.textureSize
    }
    ShaderEffect {
        property var source: horizontal
        property point texelStep: Qt.point(0, material.scale / Math.max(1, material.height))

        visible: material.blurs
        anchors.fill: parent
        fragmentShader: "qrc:/shaders/Blur.frag.qsb"
    }
    Rectangle {
        anchors.fill: parent
        color: Theme.colors.bar
        opacity: material.blurs ? Theme.barOpacity : Theme.barOpacityWithoutBlur
    }
}
