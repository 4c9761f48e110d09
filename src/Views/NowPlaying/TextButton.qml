import QtQuick
import QtQuick.Controls
import Tamsy.Controls

/// A bordered text button in the dark palette.
AppButton {
    id: button

    implicitWidth: label.implicitWidth + 32
    implicitHeight: 32
    Accessible.name: text

    background: Rectangle {
        radius: Theme.radius
        color: button.down ? Theme.onArt.buttonPressed : button.hovered ? Theme.onArt.buttonHover : Theme.onArt.button
        border.color: Theme.onArt.buttonBorder
        Behavior on color {
            enabled: !button.down
            ColorAnimation { duration: button.hovered ? Theme.fadeIn : Theme.fadeOut; easing.type: Easing.OutCubic }
        }
    }
    contentItem: Text {
        id: label

        text: button.text
        textFormat: Text.PlainText
        font.pixelSize: Theme.bodySize
        color: Theme.onArt.text
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    FocusRing {
        shown: button.visualFocus
        inset: -4
        ink: Theme.onArt.focus
    }
}
