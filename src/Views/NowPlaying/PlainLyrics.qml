import QtQuick
import Tamsy.NowPlaying
import Tamsy.Views

/// Lyrics without times, to be scrolled by hand.
ListView {
    id: list

    required property LyricsPanelModel lyrics
    required property real size
    required property real shade

    leftMargin: 30
    rightMargin: 30
    topMargin: 30
    bottomMargin: 30
    spacing: size * 40 / 46
    clip: true
    reuseItems: true
    boundsBehavior: Flickable.StopAtBounds
    model: lyrics
    Accessible.role: Accessible.List
    Accessible.name: AccessibleNames.lyrics

    // Ids around a component are unknown to the checker.
    // qmllint disable unqualified
    delegate: Item {
        id: row

        required property string line

        width: list.width - 60
        height: measure.implicitHeight
        Accessible.role: Accessible.ListItem
        Accessible.name: line

        Text {
            id: measure

            width: row.width
            visible: false
            text: row.line
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            font.pixelSize: list.size
            font.weight: Font.Medium
        }
        LyricText {
            anchors.fill: parent
            text: row.line
            size: list.size
            weight: Font.Medium
            ink: Qt.rgba(1, 1, 1, 0.8)
            blurred: false
            shade: list.shade
        }
    }
    // qmllint enable unqualified
}
