import QtQuick
import QtQuick.Controls
import Tamsy.Controls

/// A text button that only the pointer reveals. The text is a title, so "&" isn't a mnemonic.
AppButton {
    id: button

    required property string title

    implicitWidth: label.implicitWidth
    implicitHeight: 28
    padding: 0
    containmentMask: area
    Accessible.name: title

    background: Item {
        HoverFill {
            id: area

            x: -8
            width: button.width + 16
            height: button.height
            radius: Theme.smallRadius
            color: button.down ? Theme.colors.buttonPressed : Theme.colors.hover
            shown: button.title !== "" && (button.hovered || button.down)
        }
        FocusRing {
            anchors.fill: area
            shown: button.visualFocus
            parentRadius: Theme.smallRadius
        }
    }
    contentItem: Text {
        id: label

        text: button.title
        textFormat: Text.PlainText
        elide: Text.ElideRight
        font.pixelSize: Theme.bodySize
        color: Theme.colors.text
        verticalAlignment: Text.AlignVCenter
    }
    ElisionTip {
        label: button.hovered && !button.down ? label : null
    }
}
