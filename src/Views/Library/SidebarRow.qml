import QtQuick
import QtQuick.Controls
import Tamsy.Controls

/// One folder of the sidebar with its context menu.
Item {
    id: row

    required property int index
    required property var folderId
    required property string displayName
    property bool hasListFocus: false
    property bool showsKeyboardFocus: false
    readonly property bool selected: ListView.isCurrentItem

    signal selectRequested
    signal rescanRequested
    signal removeRequested

    /// Opens the menu below the row, as the keyboard asks for it.
    function openMenu(): void {
        menu.popup(fill, fill.radius, fill.height);
    }

    height: Theme.folderRowHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: displayName
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: selectRequested()

    Rectangle {
        id: fill

        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        radius: Theme.smallRadius
        color: !row.selected ? "transparent" : row.hasListFocus ? Theme.colors.selectedActive : Theme.colors.selectedInactive

        HoverFill {
            anchors.fill: parent
            visible: !row.selected
            radius: Theme.smallRadius
            color: Theme.colors.sidebarHover
            shown: pointer.hovered || menu.opened
        }
        Text {
            id: name

            anchors.fill: parent
            anchors.leftMargin: 8
            anchors.rightMargin: 8
            verticalAlignment: Text.AlignVCenter
            text: row.displayName
            textFormat: Text.PlainText
            elide: Text.ElideMiddle
            font.pixelSize: Theme.bodySize
            color: Theme.colors.text
        }
        FocusRing {
            shown: row.selected && row.showsKeyboardFocus
            parentRadius: Theme.smallRadius
        }
    }
    RowPointer {
        id: pointer

        anchors.fill: fill
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onChosen: row.selectRequested()
        onPressed: mouse => {
            if (mouse.button === Qt.RightButton)
                menu.popup(pointer, mouse.x, mouse.y);
        }
        onPressAndHold: mouse => {
            if (isFinger)
                menu.popup(pointer, mouse.x, mouse.y); // where a finger is there is no pointer
        }
    }
    ElisionTip {
        label: pointer.hovered && !menu.opened ? name : null
    }
    AppMenu {
        id: menu

        // Without the release: the finger that has opened the menu never rests.
        closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutside

        AppMenuItem {
            text: "重新扫描"
            onTriggered: row.rescanRequested()
        }
        AppMenuItem {
            text: "移除"
            destructive: true
            onTriggered: row.removeRequested()
        }
    }
}
