import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// Lyrics without times, scrolled by the user.
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
    activeFocusOnTab: true
    keyNavigationEnabled: false

    function scrollTo(y: real): void {
        cancelFlick();
        contentY = Math.max(originY - topMargin, Math.min(originY + contentHeight + bottomMargin - height, y));
    }
    // With the focus the arrow keys scroll; elsewhere in the window they change the volume.
    Keys.onShortcutOverride: event => {
        event.accepted = event.key === Qt.Key_Up || event.key === Qt.Key_Down;
    }
    Keys.onPressed: event => {
        const line = size + spacing;
        switch (event.key) {
        case Qt.Key_Up: scrollTo(contentY - line); break;
        case Qt.Key_Down: scrollTo(contentY + line); break;
        case Qt.Key_PageUp: scrollTo(contentY - height + line); break;
        case Qt.Key_PageDown: scrollTo(contentY + height - line); break;
        case Qt.Key_Home: scrollTo(originY - topMargin); break;
        case Qt.Key_End: scrollTo(originY + contentHeight); break;
        default: return;
        }
        event.accepted = true;
    }

    FocusRing {
        shown: list.activeFocus
        inset: 4
        ink: Qt.rgba(1, 1, 1, 0.9)
    }
    // The linter doesn't know ids outside a component.
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
