import QtQuick
import QtQuick.Controls

/// An icon button, filled only under the pointer.
AppButton {
    id: button

    required property string iconName
    property int iconSize: 20
    /// The tooltip and accessible name.
    property string help: ""

    implicitWidth: 32
    implicitHeight: 32
    Accessible.name: help

    background: HoverFill {
        radius: Theme.radius
        color: button.down ? Theme.colors.buttonPressed : Theme.colors.hover
        shown: button.hovered || button.down
    }
    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: button.iconName
            size: button.iconSize
            color: button.enabled ? button.hovered ? Theme.colors.text : Theme.colors.text2 : Theme.colors.disabled
        }
    }
    FocusRing {
        shown: button.visualFocus
    }
    AppToolTip {
        parent: button
        text: button.help
        visible: button.help !== "" && button.hovered && !button.down
    }
}
