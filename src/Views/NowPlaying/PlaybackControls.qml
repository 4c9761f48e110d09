import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// The transport controls and the volume bar.
Column {
    id: controls

    required property PlayerViewModel player
    required property real rowWidth
    /// The volume bar's value while it is dragged, 0 to 1, or -1.
    property real previewVolume: -1
    readonly property bool isDraggingVolume: previewVolume >= 0
    readonly property alias isHoveringVolume: volumeBar.hovered

    spacing: 10
    bottomPadding: 20

    // The playing flag changes one turn of the event loop after the action.
    Timer {
        id: pressed

        interval: 0
        onTriggered: NowPlayingLog.log("tap play/pause -> " + (controls.player.isPlaying ? "playing" : "paused"))
    }
    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 30

        ArtButton {
            anchors.verticalCenter: parent.verticalCenter
            iconName: "shuffle"
            horizontalGrow: 8
            verticalGrow: 8
            armed: controls.player.shuffleEnabled
            text: AccessibleNames.shuffle
            Accessible.checkable: true
            Accessible.checked: armed
            onClicked: {
                controls.player.toggleShuffle();
                NowPlayingLog.log("tap shuffle -> " + (controls.player.shuffleEnabled ? "ON" : "OFF"));
            }
        }
        ArtButton {
            anchors.verticalCenter: parent.verticalCenter
            width: 38
            height: 38
            iconName: "previous"
            iconSize: 36
            ink: Qt.rgba(1, 1, 1, 0.82)
            text: AccessibleNames.previous
            onClicked: {
                controls.player.previous();
                NowPlayingLog.log("tap previous");
            }
        }
        ArtButton {
            anchors.verticalCenter: parent.verticalCenter
            width: 48
            height: 48
            iconName: controls.player.isPlaying ? "pause" : "play"
            iconSize: 48
            text: AccessibleNames.playPause
            onClicked: {
                controls.player.togglePlayPause();
                pressed.restart();
            }
        }
        ArtButton {
            anchors.verticalCenter: parent.verticalCenter
            width: 38
            height: 38
            iconName: "next"
            iconSize: 36
            ink: Qt.rgba(1, 1, 1, 0.82)
            text: AccessibleNames.next
            onClicked: {
                controls.player.next();
                NowPlayingLog.log("tap next");
            }
        }
        ArtButton {
            anchors.verticalCenter: parent.verticalCenter
            iconName: controls.player.repeatOneEnabled ? "repeat-one" : "repeat"
            horizontalGrow: 8
            verticalGrow: 8
            armed: controls.player.repeatOneEnabled
            text: AccessibleNames.repeatOne
            Accessible.checkable: true
            Accessible.checked: armed
            onClicked: {
                controls.player.toggleRepeatOne();
                NowPlayingLog.log("tap repeat -> " + (controls.player.repeatOneEnabled ? "ONE" : "OFF"));
            }
        }
    }
    Item {
        width: controls.rowWidth
        height: 24

        Icon {
            width: 24
            height: 24
            name: controls.player.volume < 0.01 ? "speaker-mute" : controls.player.volume < 0.5 ? "speaker-low" : "speaker-high"
            size: 24
            color: Qt.rgba(1, 1, 1, 0.9)
        }
        ArtBar {
            id: volumeBar

            x: 32
            width: parent.width - x
            height: 24
            fraction: Math.max(0, Math.min(1, controls.isDraggingVolume ? controls.previewVolume : controls.player.volume))
            showsThumb: controls.isHoveringVolume
            Accessible.name: AccessibleNames.volume
            // The volume changes only at the end of the drag.
            onDragged: fraction => controls.previewVolume = fraction
            onDropped: fraction => {
                controls.previewVolume = -1;
                controls.player.volume = fraction;
                NowPlayingLog.log("volume end -> " + fraction.toFixed(3));
            }
            onCanceled: controls.previewVolume = -1
            onStepped: direction => controls.player.volume = Math.max(0, Math.min(1, controls.player.volume + 0.05 * direction))
        }
    }
}
