import QtQuick
import QtQuick.Controls

/// A flat button with an icon.
FlatButton {
    id: button

    required property string iconName
    property int iconSize: 20
    /// The tooltip and accessible name.
    property string help: ""

    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    Accessible.name: help

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: button.iconName
            size: button.iconSize
            color: button.enabled ? button.hovered ? Theme.colors.text : Theme.colors.text2 : Theme.colors.disabled
        }
    }
    AppToolTip {
        parent: button
        text: button.help
        visible: button.help !== "" && button.hovered && !button.down
    }
}
