import QtQuick
import QtQuick.Layouts
import Tamsy.Controls

/// The bar along the bottom: play and pause, title, time and position.
Item {
    id: bar

    required property PlayerViewModel player
    required property LibraryViewModel library
    /// The content below the bar, which shows through blurred.
    required property Item backdrop

    implicitHeight: Theme.playerBarHeight
    Accessible.role: Accessible.ToolBar
    Accessible.name: AccessibleNames.playerBar

    // Keeps clicks from the rows below.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }
    BarMaterial {
        anchors.fill: parent
        backdrop: bar.backdrop
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.colors.separator
    }
    RowLayout {
        x: 12
        y: 8
        width: parent.width - 24
        height: Theme.controlHeight
        spacing: 12

        BorderedButton {
            text: "播放 / 暂停"
            iconName: bar.player.isPlaying ? "pause" : "play"
            onClicked: bar.player.togglePlayPause()
        }
        Item {
            Layout.fillWidth: true
            implicitHeight: title.implicitHeight

            TitleButton {
                id: title

                width: Math.min(implicitWidth, parent.width - 12)
                title: bar.player.currentTitle !== "" ? bar.player.currentTitle : bar.player.currentAddress === "" ? "无正在播放" : ""
                onClicked: bar.player.showNowPlayingWindow(bar.player, bar.library)
            }
        }
        Text {
            text: TimeFormat.timeString(bar.player.currentTime) + " / " + TimeFormat.timeString(bar.player.duration)
            textFormat: Text.PlainText
            font.pixelSize: Theme.smallSize
            color: Theme.colors.text2
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    TimeSlider {
        id: slider

        // A drag belongs to the track on which it began and doesn't seek in the next one.
        property string draggedAddress: ""
        // Playback moves the handle away from a pointer that doesn't move; its release is no seek.
        property real soughtPosition: -1

        x: 12
        y: 46
        width: parent.width - 24
        to: bar.player.duration > 0 ? bar.player.duration : 1
        value: bar.player.currentTime
        Accessible.name: AccessibleNames.position
        onPressedChanged: {
            draggedAddress = pressed ? bar.player.currentAddress : "";
            soughtPosition = -1;
        }
        onMoved: {
            if (pressed && (draggedAddress !== bar.player.currentAddress || soughtPosition === position))
                return;
            soughtPosition = position;
            bar.player.seek(value);
        }
    }
}
