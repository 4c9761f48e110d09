import QtQuick

/// The small cover of a row; a playing row carries a speaker over it.
Item {
    id: artwork

    property bool current: false
    property bool playing: false

    width: 28
    height: 28
    Accessible.ignored: true

    Image {
        anchors.fill: parent
        source: "image://covers/fallback"
        sourceSize.width: 28
        sourceSize.height: 28
        cache: true
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
