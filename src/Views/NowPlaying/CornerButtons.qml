import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// The two buttons in the window's corner, for the track picker and the lyrics.
Item {
    id: corner

    required property bool showLyrics
    required property real shade

    signal listRequested
    signal lyricsToggled

    // The item's area includes the shadow's.
    width: row.width + 48
    height: row.height + 48

    LegibilityShadow {
        anchors.fill: block
        source: block
        strength: corner.shade
    }
    Item {
        id: block

        anchors.fill: parent
        layer.enabled: GraphicsInfo.api !== GraphicsInfo.Software

        Row {
            id: row

            anchors.centerIn: parent
            spacing: 18

            ArtButton {
                id: listButton

                iconName: "list"
                horizontalGrow: 8
                verticalGrow: 8
                text: "曲目列表"
                onClicked: corner.listRequested()
            }
            ArtButton {
                id: lyricsButton

                iconName: corner.showLyrics ? "lyrics-filled" : "lyrics"
                horizontalGrow: 8
                verticalGrow: 8
                text: "歌词"
                Accessible.checkable: true
                Accessible.checked: corner.showLyrics
                onClicked: corner.lyricsToggled()
            }
        }
    }
    AppToolTip {
        parent: listButton
        colors: Theme.onArt
        text: listButton.text
        visible: listButton.hovered && !listButton.down
        y: -implicitHeight - 12
    }
    AppToolTip {
        parent: lyricsButton
        colors: Theme.onArt
        text: lyricsButton.text
        visible: lyricsButton.hovered && !lyricsButton.down
        y: -implicitHeight - 12
    }
}
