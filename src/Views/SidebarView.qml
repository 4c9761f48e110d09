import QtQuick
import QtQuick.Controls
import Tamsy.Views

/// The library's folders, one of which can be selected.
Rectangle {
    id: sidebar

    required property LibraryViewModel library
    /// Room at the bottom that something lies over.
    property int bottomInset: 0

    color: Theme.colors.chrome

    ListView {
        id: list

        anchors.fill: parent
        topMargin: 12
        bottomMargin: sidebar.bottomInset + 8
        clip: true
        // The base of a model made in C++ is unknown to the checker.
        // qmllint disable
        model: FolderListModel {
            id: folderModel
            library: sidebar.library
        }
        // qmllint enable
        currentIndex: folderModel.selectedRow
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: false
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.List
        Accessible.name: AccessibleNames.folders
        ScrollBar.vertical: ThinScrollBar {
            bottomPadding: sidebar.bottomInset + 2
        }

        function select(row: int) {
            if (row >= 0 && row < count) {
                sidebar.library.selectedFolderId = folderModel.idAt(row);
                positionViewAtIndex(row, ListView.Contain);
            }
        }
        Keys.onUpPressed: select(currentIndex < 0 ? count - 1 : currentIndex - 1)
        Keys.onDownPressed: select(currentIndex + 1)
        Keys.onPressed: event => {
            if (event.key === Qt.Key_Home)
                select(0);
            else if (event.key === Qt.Key_End)
                select(count - 1);
            else
                return;
            event.accepted = true;
        }

        // Ids around a component are unknown to the checker.
        // qmllint disable unqualified
        delegate: SidebarRow {
            width: list.width
            hasListFocus: list.activeFocus
            onSelectRequested: {
                list.forceActiveFocus();
                list.select(index);
            }
            onRescanRequested: sidebar.library.rescanFolder(folderId)
            onRemoveRequested: sidebar.library.removeFolder(folderId)
        }
        // qmllint enable unqualified
    }
    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.colors.separator
    }
}
