import QtQuick
import QtQuick.Controls
import Tamsy.Controls
import Tamsy.Library

/// The list of the library's folders.
Rectangle {
    id: sidebar

    required property LibraryViewModel library
    /// Height at the bottom that something covers.
    property int bottomInset: 0

    color: Theme.colors.chrome

    RowList {
        id: list

        anchors.fill: parent
        topMargin: 12
        bottomMargin: bottomInset + 8
        rowHeight: Theme.folderRowHeight
        bottomInset: sidebar.bottomInset
        // The linter doesn't know the base class of a C++ model.
        // qmllint disable
        model: FolderListModel {
            id: folderModel
            library: sidebar.library
        }
        // qmllint enable
        currentIndex: folderModel.selectedRow
        Accessible.role: Accessible.List
        Accessible.name: AccessibleNames.folders

        function select(row: int): void {
            if (row >= 0 && row < count) {
                sidebar.library.selectedFolderId = folderModel.idAt(row);
                reveal(row);
            }
        }
        Keys.onUpPressed: select(currentIndex < 0 ? count - 1 : currentIndex - 1)
        Keys.onDownPressed: select(currentIndex + 1)
        Keys.onPressed: event => {
            if (event.key === Qt.Key_Home)
                select(0);
            else if (event.key === Qt.Key_End)
                select(count - 1);
            else if (event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier)
                (currentItem as SidebarRow)?.openMenu();
            else
                return;
            event.accepted = true;
        }

        // The linter doesn't know ids outside a component.
        // qmllint disable unqualified
        delegate: SidebarRow {
            width: list.width
            hasListFocus: list.activeFocus
            showsKeyboardFocus: list.showsKeyboardFocus
            onSelectRequested: {
                list.focusByPointer();
                list.select(index);
            }
            onRescanRequested: sidebar.library.rescanFolder(folderId)
            onRemoveRequested: sidebar.library.removeFolder(folderId)
        }
        // qmllint enable unqualified
    }
    FocusRing {
        shown: list.showsKeyboardFocus && list.currentIndex < 0
        inset: 4
    }
    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.colors.separator
    }
}
