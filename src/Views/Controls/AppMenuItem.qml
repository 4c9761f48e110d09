import QtQuick
import QtQuick.Controls

/// A menu item: its text, and its shortcut on the right.
MenuItem {
    id: item

    property bool destructive: false
    property string shortcutText: action instanceof ShortcutAction ? action.shortcutText : ""

    implicitHeight: Theme.menuItemHeight
    implicitWidth: label.implicitWidth + (shortcutText === "" ? 0 : shortcutLabel.implicitWidth + 32) + 16
    leftPadding: 8
    rightPadding: 8
    topPadding: 0
    bottomPadding: 0
    indicator: null
    arrow: null
    Accessible.role: Accessible.MenuItem
    Accessible.name: text

    contentItem: Item { // qmllint disable deferred-property-id
        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            textFormat: Text.PlainText
            font.pixelSize: Theme.bodySize
            color: !item.enabled ? Theme.colors.disabled : item.destructive ? Theme.colors.destructive : Theme.colors.text
        }
        Text {
            id: shortcutLabel

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: item.shortcutText
            textFormat: Text.PlainText
            font.pixelSize: Theme.smallSize
            color: Theme.colors.text2
        }
    }
    background: Rectangle {
        radius: Theme.smallRadius
        color: item.highlighted ? Theme.colors.menuHover : "transparent"
    }
}
