import QtQuick
import QtQuick.Controls
import Tamsy.Controls

/// An icon button on the cover's colours.
AppButton {
    id: button

    required property string iconName
    property int iconSize: 24
    property color ink: Qt.rgba(1, 1, 1, 0.9)
    /// Whether its mode is on, shown by the accent and a dot below the icon.
    property bool armed: false
    /// How far the clickable area extends beyond each side.
    property int grow: 0
    /// The tooltip.
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
