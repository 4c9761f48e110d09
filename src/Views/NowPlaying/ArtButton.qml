import QtQuick
import QtQuick.Controls
import Tamsy.Controls

/// An icon on the cover's colours that does something.
AppButton {
    id: button

    required property string iconName
    property int iconSize: 24
    property color ink: Qt.rgba(1, 1, 1, 0.9)
    /// An armed mode: the accent, and a dot below the icon.
    property bool armed: false
    /// By how much the area that takes clicks is larger on each side, without moving the layout.
    property int grow: 0
    /// Shown as a tool tip.
    property string help: ""

    implicitWidth: iconSize
    implicitHeight: iconSize
    padding: 0
    containmentMask: area
    Accessible.name: text
    Accessible.checkable: checkable
    Accessible.checked: checked

    background: Item {
        HoverFill {
            id: area

            x: -button.grow
            y: -button.grow
            width: button.width + 2 * button.grow
            height: button.height + 2 * button.grow
            radius: Theme.radius
            color: button.down ? Qt.rgba(1, 1, 1, 0.2) : Qt.rgba(1, 1, 1, 0.12)
            shown: button.hovered || button.down
        }
        FocusRing {
            anchors.fill: area
            shown: button.visualFocus
            ink: Qt.rgba(1, 1, 1, 0.9)
        }
    }
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
