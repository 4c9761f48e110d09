import QtQuick
import QtQuick.Controls

/// A bordered button with an icon.
AppButton {
    id: button

    required property string iconName

    implicitWidth: 40
    implicitHeight: 32
    Accessible.name: text

    background: Rectangle {
        radius: Theme.radius
        color: button.down ? Theme.colors.buttonPressed : button.hovered ? Theme.colors.buttonHover : Theme.colors.button
        border.color: Theme.colors.buttonBorder
        Behavior on color {
            enabled: !button.down
            ColorAnimation { duration: button.hovered ? Theme.fadeIn : Theme.fadeOut; easing.type: Easing.OutCubic }
        }
    }
    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: button.iconName
            color: button.enabled ? Theme.colors.text : Theme.colors.disabled
        }
    }
    FocusRing {
        shown: button.visualFocus
        inset: -4
    }
}
