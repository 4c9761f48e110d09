import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// The moving background in the cover's colours.
Item {
    id: background

    required property PlayerViewModel player
    required property var image
    required property bool isFullScreen
    required property bool canBeSeen
    readonly property alias textShadowStrength: gradient.textShadowStrength
    readonly property bool isSoftware: GraphicsInfo.api === GraphicsInfo.Software

    /// Whether the blobs move.
    function recomputeActive(): bool {
        return player.isUIVisible && Window.visibility !== Window.Hidden && !isSoftware;
    }

    // The base of a model made in C++ is unknown to the checker.
    // qmllint disable
    ArtworkGradientModel {
        id: gradient

        image: background.image
        isFullScreen: background.isFullScreen
        isSeeking: background.player.isSeeking
        isActive: background.recomputeActive()
        canBeSeen: background.canBeSeen
        area: Qt.size(background.width, background.height)
    }
    // qmllint enable
    Loader {
        anchors.fill: parent
        active: !background.isSoftware
        sourceComponent: MovingGradient {
            model: gradient // qmllint disable
        }
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
