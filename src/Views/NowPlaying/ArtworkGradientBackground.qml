import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// A slow, soft field of the cover's colours. It moves while it can be seen.
Item {
    id: background

    required property PlayerViewModel player
    required property var image
    required property bool isFullScreen
    required property bool canBeSeen
    readonly property alias textShadowStrength: gradient.textShadowStrength
    readonly property bool isSoftware: GraphicsInfo.api === GraphicsInfo.Software

    // The base of a model made in C++ is unknown to the checker.
    // qmllint disable
    ArtworkGradientModel {
        id: gradient

        image: background.image
        isFullScreen: background.isFullScreen
        isSeeking: background.player.isSeeking
        isActive: background.player.isUIVisible && background.Window.visibility !== Window.Hidden && !background.isSoftware
        canBeSeen: background.canBeSeen
        area: Qt.size(background.width, background.height)
    }
    // qmllint enable
    ShaderEffect {
        readonly property real glow: gradient.isActive ? 1 : 0
        readonly property size area: Qt.size(width, height)
        readonly property color firstColor: gradient.firstColor
        readonly property color secondColor: gradient.secondColor
        readonly property vector4d blob0: gradient.blob0
        readonly property vector4d blob1: gradient.blob1
        readonly property vector4d blob2: gradient.blob2
        readonly property vector4d blob3: gradient.blob3
        readonly property vector4d blob4: gradient.blob4
        readonly property vector4d blob5: gradient.blob5
        readonly property vector4d blobColor0: gradient.blobColor0
        readonly property vector4d blobColor1: gradient.blobColor1
        readonly property vector4d blobColor2: gradient.blobColor2
        readonly property vector4d blobColor3: gradient.blobColor3
        readonly property vector4d blobColor4: gradient.blobColor4
        readonly property vector4d blobColor5: gradient.blobColor5

        anchors.fill: parent
        visible: !background.isSoftware
        blending: false
        vertexShader: "qrc:/shaders/ArtworkGradient.vert.qsb"
        fragmentShader: "qrc:/shaders/ArtworkGradient.frag.qsb"
    }
    Loader {
        anchors.fill: parent
        active: background.isSoftware
        sourceComponent: StaticGradient {
            firstColor: gradient.firstColor
            secondColor: gradient.secondColor
        }
    }
}
