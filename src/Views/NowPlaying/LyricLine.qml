import QtQuick
import Tamsy.Controls

/// A line of synced lyrics: the current one stands out, later ones are blurred and faint, past ones are
/// invisible.
Item {
    id: row

    required property int index
    required property string line
    required property int currentLyricIndex
    required property real size
    required property real shade
    readonly property bool current: index === currentLyricIndex

    // Sized for the bold text, so that nothing moves when the line becomes current.
    height: Math.max(regular.implicitHeight, bold.implicitHeight)
    opacity: index < currentLyricIndex ? 0 : 1
    visible: opacity > 0
    Accessible.role: Accessible.ListItem
    Accessible.name: line
    Accessible.selected: current
    Behavior on opacity {
        NumberAnimation { duration: Theme.lyricsFade; easing.type: Theme.easeInOut }
    }

    Text {
        id: regular

        width: row.width
        visible: false
        text: row.line
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        font.pixelSize: row.size
    }
    Text {
        id: bold

        width: row.width
        visible: false
        text: row.line
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        font.pixelSize: row.size
        font.weight: Font.DemiBold
    }
    LyricText {
        anchors.fill: parent
        visible: opacity > 0
        opacity: row.current ? 0 : 1
        text: row.line
        size: row.size
        weight: Font.Normal
        ink: Qt.rgba(1, 1, 1, 0.55 * 0.9)
        blurred: true
        shade: row.shade
        Behavior on opacity {
            NumberAnimation { duration: Theme.lyricsFade; easing.type: Theme.easeInOut }
        }
    }
    LyricText {
        anchors.fill: parent
        visible: opacity > 0
        opacity: row.current ? 1 : 0
        text: row.line
        size: row.size
        weight: Font.DemiBold
        ink: "#FFFFFF"
        blurred: false
        shade: row.shade
        Behavior on opacity {
            NumberAnimation { duration: Theme.lyricsFade; easing.type: Theme.easeInOut }
        }
    }
}
