import QtQuick
import Tamsy.Controls

/// A flat icon button on the cover's colours.
FlatButton {
    id: button

    required property string iconName
    property int iconSize: 24
    property color ink: Qt.rgba(1, 1, 1, 0.9)
    /// Whether its mode is on, shown by the accent and a dot below the icon.
    property bool armed: false

    implicitWidth: iconSize
    implicitHeight: iconSize
    fill: Qt.rgba(1, 1, 1, 0.12)
    pressedFill: Qt.rgba(1, 1, 1, 0.2)
    focusInk: Qt.rgba(1, 1, 1, 0.9)
    Accessible.name: text
    Accessible.checkable: checkable
    Accessible.checked: checked

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: button.iconName
            size: button.iconSize
            color: button.armed ? Theme.accentOnArt : button.ink
        }
        HoverFill {
            anchors.horizontalCenter: parent.horizontalCenter
            y: (parent.height + button.iconSize) / 2 + 4
            width: 4
            height: 4
            radius: 2
            color: Theme.accentOnArt
            shown: button.armed
        }
    }
}
