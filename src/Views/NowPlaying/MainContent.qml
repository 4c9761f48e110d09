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

    /// Where the time bar stands while it is dragged, in seconds, or -1.
    property real previewSeekTime: -1

    // On a low window the cover gives way, above and below it the least of air stays.
    CoverView {
        id: cover

        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.max(0, Math.round((content.height - height - content.spacing - block.contentHeight) / 2))
        model: content.model
        side: Math.max(80, Math.min(400, content.width, content.height - content.spacing - block.contentHeight - 2 * 28))
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
        readonly property real contentHeight: 50 + content.spacing + 42 + controls.height
        readonly property real labelWidth: Math.min(content.width - 80, Math.max(title.implicitWidth, artist.implicitWidth))

        anchors.horizontalCenter: parent.horizontalCenter
        y: cover.y + cover.height + content.spacing - margin
        width: Math.ceil(Math.max(content.rowWidth, labelWidth)) + 2 * margin
        height: contentHeight + 2 * margin
        layer.enabled: GraphicsInfo.api !== GraphicsInfo.Software

        Column {
            y: block.margin
            width: parent.width
            spacing: content.spacing

            Item {
                width: parent.width
                height: 50

                ArtText {
                    id: title

                    anchors.horizontalCenter: parent.horizontalCenter
                    y: -3
                    width: block.labelWidth
                    height: 30
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    text: content.player.currentTitle
                    shade: content.shade
                    font.pixelSize: 26
                    font.weight: Font.DemiBold

                    HoverHandler {
                        id: titlePointer
                    }
                }
                ArtText {
                    id: artist

                    anchors.horizontalCenter: parent.horizontalCenter
                    y: 33
                    width: block.labelWidth
                    height: 20
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    text: content.model.artist
                    shade: content.shade
                    color: Qt.rgba(1, 1, 1, 0.8)
                    font.pixelSize: 16

                    HoverHandler {
                        id: artistPointer
                    }
                }
                ElisionTip {
                    label: titlePointer.hovered ? title : artistPointer.hovered ? artist : null
                    colors: Theme.onArt
                }
            }
            Item {
                id: timeBlock

                readonly property real shownTime: content.previewSeekTime >= 0 ? content.previewSeekTime : content.player.currentTime

                anchors.horizontalCenter: parent.horizontalCenter
                width: content.rowWidth
                height: 42

                ArtBar {
                    id: timeBar

                    readonly property real duration: content.player.duration > 0 ? content.player.duration : 1

                    width: parent.width
                    height: 20
                    fraction: content.player.duration > 0 ? Math.max(0, Math.min(1, timeBlock.shownTime / content.player.duration)) : 0
                    Accessible.name: AccessibleNames.position
                    // Playback isn't affected until the end of the drag.
                    onDragged: fraction => {
                        if (!content.player.isSeeking)
                            content.player.isSeeking = true;
                        content.previewSeekTime = fraction * duration;
                    }
                    onDropped: fraction => {
                        const target = fraction * duration;
                        content.previewSeekTime = -1;
                        content.player.seek(target);
                        seekingEnd.restart();
                        NowPlayingLog.log("seek end -> " + target.toFixed(3) + " / " + duration.toFixed(3));
                    }
                    onCanceled: {
                        content.previewSeekTime = -1;
                        seekingEnd.restart();
                    }
                    onStepped: direction => content.player.seek(Math.max(0, Math.min(duration, content.player.currentTime + 5 * direction)))
                }
                ArtText {
                    y: 26
                    height: 16
                    verticalAlignment: Text.AlignVCenter
                    text: TimeFormat.timeString(timeBlock.shownTime)
                    shade: content.shade
                    color: Qt.rgba(1, 1, 1, 0.7)
                    font.pixelSize: Theme.smallSize
                }
                ArtText {
                    anchors.right: parent.right
                    y: 26
                    height: 16
                    verticalAlignment: Text.AlignVCenter
                    text: TimeFormat.timeString(content.player.duration)
                    shade: content.shade
                    color: Qt.rgba(1, 1, 1, 0.7)
                    font.pixelSize: Theme.smallSize
                }
            }
        }
        PlaybackControls {
            id: controls

            anchors.horizontalCenter: parent.horizontalCenter
            y: block.margin + 50 + content.spacing + 42
            player: content.player
            rowWidth: content.rowWidth
        }
    }
    // A second drag soon after the first shares the flag and may find it cleared.
    Timer {
        id: seekingEnd

        interval: 200
        onTriggered: content.player.isSeeking = false
    }
}
