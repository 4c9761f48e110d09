import QtQuick
import Tamsy.Controls

/// A row's thumbnail, or the fallback cover until it has loaded, with a speaker over it while the row
/// is playing.
Item {
    id: artwork

    property alias address: thumbnail.address
    /// Whether the row is on screen.
    property alias isShown: thumbnail.isShown
    property bool current: false
    property bool playing: false

    width: 28
    height: 28
    Accessible.ignored: true

    Thumbnail {
        id: thumbnail
    }
    Image {
        anchors.fill: parent
        visible: !thumbnail.hasImage
        source: "image://covers/fallback"
        sourceSize.width: 28
        sourceSize.height: 28
        cache: true
    }
    PictureItem {
        anchors.fill: parent
        visible: thumbnail.hasImage
        image: thumbnail.image // qmllint disable
        radius: Theme.smallRadius
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.smallRadius
        color: artwork.current ? "#85000000" : "transparent"
        border.width: artwork.current ? 0 : 1
        border.color: "#0F000000"

        Icon {
            anchors.centerIn: parent
            anchors.horizontalCenterOffset: artwork.playing ? 0 : 3
            visible: artwork.current
            name: artwork.playing ? "speaker-high" : "speaker-mute"
            size: 18
            color: "#FFFFFF"
        }
    }
}
