import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// The cover with title, time and controls below it: everything in the window except the lyrics.
Item {
    id: content

    required property NowPlayingModel model
    required property PlayerViewModel player
    required property bool isFullScreen
    /// The strength of the shadow below text and controls, 0 to 1.
    required property real shade
    readonly property real rowWidth: isFullScreen ? 400 : 380
    readonly property int spacing: 20

    // In a low window the cover shrinks, which leaves minimum margins above and below.
    CoverView {
        id: cover

        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.max(0, Math.round((content.height - height - content.spacing - column.height) / 2))
        model: content.model
        side: Math.max(80, Math.min(400, content.width, content.height - content.spacing - column.height - 2 * 28))
    }
    LegibilityShadow {
        anchors.fill: block
        source: block
        strength: content.shade
    }
    // One layer for everything below the cover, with a margin for the shadow's blur.
    Item {
        id: block

        readonly property int margin: 20

        anchors.horizontalCenter: parent.horizontalCenter
        y: cover.y + cover.height + content.spacing - margin
        width: Math.ceil(Math.max(content.rowWidth, labels.width)) + 2 * margin
        height: column.height + 2 * margin
        layer.enabled: GraphicsInfo.api !== GraphicsInfo.Software

        Column {
            id: column

            y: block.margin
            width: parent.width

            TrackLabels {
                id: labels

                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.min(content.width - 80, textWidth)
                title: content.player.currentTitle
                artist: content.model.artist
                shade: content.shade
            }
            Item {
                width: 1
                height: content.spacing
            }
            TimeBlock {
                anchors.horizontalCenter: parent.horizontalCenter
                width: content.rowWidth
                player: content.player
                shade: content.shade
            }
            PlaybackControls {
                anchors.horizontalCenter: parent.horizontalCenter
                player: content.player
                rowWidth: content.rowWidth
            }
        }
    }
}
