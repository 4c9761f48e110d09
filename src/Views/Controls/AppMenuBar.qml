import QtQuick
import QtQuick.Controls

/// The main window's menu bar.
MenuBar {
    id: bar

    /// Opens the first menu; the arrow keys move to the others.
    function openFirst(): void {
        (itemAt(0) as MenuBarItem).triggered();
    }

    implicitHeight: Theme.menuItemHeight
    leftPadding: 8
    rightPadding: 8
    topPadding: 0
    bottomPadding: 0
    spacing: 0
    Accessible.role: Accessible.MenuBar
    Accessible.name: AccessibleNames.menuBar

    delegate: MenuBarItem {
        id: title

        implicitHeight: Theme.menuItemHeight
        leftPadding: 8
        rightPadding: 8
        topPadding: 0
        bottomPadding: 0
        Accessible.role: Accessible.MenuItem
        Accessible.name: text

        contentItem: Text {
            text: title.text
            textFormat: Text.PlainText
            font.pixelSize: Theme.bodySize
            color: Theme.colors.text
            verticalAlignment: Text.AlignVCenter
        }
        background: Item {
            HoverFill {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
                height: 24
                radius: Theme.smallRadius
                color: Theme.colors.sidebarHover
                shown: title.highlighted || title.hovered
            }
        }
    }
    background: Rectangle {
        color: Theme.colors.chrome

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.colors.separator
        }
    }
}
