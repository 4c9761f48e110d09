import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// The time bar with the position and the duration below it. Playback isn't affected until the end of a
/// drag.
Column {
    id: block

    required property PlayerViewModel player
    required property real shade

    readonly property alias isHoveringProgress: bar.hovered
    /// The bar's position while it is dragged, in seconds, or -1.
    property real previewSeekTime: -1
    readonly property bool isDraggingProgress: previewSeekTime >= 0
    readonly property real shownTime: isDraggingProgress ? previewSeekTime : player.currentTime
    readonly property real shownDuration: player.duration > 0 ? player.duration : 1

    spacing: 6

    ArtBar {
        id: bar

        width: parent.width
        height: 20
        fraction: block.player.duration > 0 ? Math.max(0, Math.min(1, block.shownTime / block.player.duration)) : 0
        showsThumb: block.isHoveringProgress
        Accessible.name: AccessibleNames.position
        onDragged: fraction => {
            if (!block.player.isSeeking)
                block.player.isSeeking = true;
            block.previewSeekTime = fraction * block.shownDuration;
        }
        onDropped: fraction => {
            const target = fraction * block.shownDuration;
            block.previewSeekTime = -1;
            block.player.seek(target);
            seekingEnd.restart();
            NowPlayingLog.log("seek end -> " + target.toFixed(3) + " / " + block.shownDuration.toFixed(3));
        }
        onCanceled: {
            block.previewSeekTime = -1;
            seekingEnd.restart();
        }
        onStepped: direction => block.player.seek(Math.max(0, Math.min(block.shownDuration, block.player.currentTime + 5 * direction)))
    }
    Item {
        width: parent.width
        height: 16

        TimeLabel {
            text: TimeFormat.timeString(block.shownTime)
        }
        TimeLabel {
            anchors.right: parent.right
            text: TimeFormat.timeString(block.player.duration)
        }
    }
    // A second drag soon after the first shares the flag and may find it cleared.
    Timer {
        id: seekingEnd

        interval: 200
        onTriggered: block.player.isSeeking = false
    }

    // The linter doesn't know ids outside a component.
    // qmllint disable unqualified
    component TimeLabel: ArtText {
        height: parent.height
        verticalAlignment: Text.AlignVCenter
        shade: block.shade
        color: Qt.rgba(1, 1, 1, 0.7)
        font.pixelSize: Theme.smallSize
    }
    // qmllint enable unqualified
}
