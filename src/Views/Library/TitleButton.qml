import QtQuick
import Tamsy.Controls

/// A text button that only the pointer reveals. The text is a title, so "&" isn't a mnemonic.
FlatButton {
    id: button

    required property string title

    implicitWidth: label.implicitWidth
    implicitHeight: 28
    horizontalGrow: 8
    radius: Theme.smallRadius
    isFilled: title !== "" && (hovered || down)
    Accessible.name: title

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
