import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// The large cover with its shadow, in its aspect ratio within a square, or a note if there is none.
Item {
    id: cover

    required property NowPlayingModel model
    /// The square's side, in points.
    required property real side
    readonly property real shrink: model.hasImage ? Math.min(side / picture.implicitWidth, side / picture.implicitHeight) : 1

    width: model.hasImage ? Math.round(picture.implicitWidth * shrink) : side
    height: model.hasImage ? Math.round(picture.implicitHeight * shrink) : side
    Accessible.ignored: true

    SoftShadow {
        blur: 20
        offset: 10
        radius: Theme.largeRadius
    }
    PictureItem {
        id: picture

        anchors.fill: parent
        visible: cover.model.hasImage
        image: cover.model.image // qmllint disable
        radius: Theme.largeRadius
    }
    Rectangle {
        anchors.fill: parent
        visible: !cover.model.hasImage
        radius: Theme.largeRadius
        color: Qt.rgba(0.5, 0.5, 0.5, 0.3)

        Icon {
            anchors.centerIn: parent
            name: "note"
            size: 80
            color: Qt.rgba(1, 1, 1, 0.5)
        }
    }
}
