import QtQuick
import QtQuick.Controls

/// A bordered button that shows its icon, or its text if it has none.
AppButton {
    id: button

    property string iconName: ""
    property ThemeColors colors: Theme.colors
    readonly property color ink: enabled ? colors.text : colors.disabled

    implicitWidth: iconName !== "" ? 40 : label.implicitWidth + 32
    implicitHeight: Theme.controlHeight
    Accessible.name: text

    background: Rectangle {
        radius: Theme.radius
        color: button.down ? button.colors.buttonPressed : button.hovered ? button.colors.buttonHover : button.colors.button
        border.color: button.colors.buttonBorder
        Behavior on color {
            enabled: !button.down
            ColorAnimation { duration: button.hovered ? Theme.fadeIn : Theme.fadeOut; easing.type: Theme.easeOut }
        }
    }
    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: button.iconName
            color: button.ink
        }
        Text {
            id: label

            anchors.fill: parent
            visible: button.iconName === ""
            text: button.text
            textFormat: Text.PlainText
            font.pixelSize: Theme.bodySize
            color: button.ink
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
        }
    }
    FocusRing {
        shown: button.visualFocus
        inset: -4
        ink: button.colors.focus
    }
}
