import QtQuick
import QtQuick.Controls
import Tamsy.Controls
import Tamsy.Library

/// The main window's content: the folders beside the track table, the search field above it, and the
/// player bar along the bottom, over both.
Item {
    id: content

    required property LibraryViewModel library
    required property PlayerViewModel player

    /// The sidebar's width in points, as set by the user; 0 until then.
    property int sidebarWidth: 0
    readonly property int minimumWidth: 220 + trackList.minimumWidth

    Component.onCompleted: player.attachLibrary(library)

    function focusSearch(): void {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }
    function revealCurrentTrack(): void {
        trackList.revealCurrent();
    }

    Item {
        id: columns

        anchors.fill: parent

        SplitView {
            id: split

            anchors.fill: parent
            Accessible.ignored: true
            onResizingChanged: {
                if (!resizing)
                    content.sidebarWidth = sidebar.width;
            }
            handle: Item {
                implicitWidth: 0
                containmentMask: Item {
                    x: -3
                    width: 7
                    height: split.height
                }
            }

            SidebarView {
                id: sidebar

                SplitView.preferredWidth: content.sidebarWidth > 0 ? content.sidebarWidth : 260
                SplitView.minimumWidth: 220
                // Unless the user has set it, it shrinks before the table's columns do.
                SplitView.maximumWidth: Math.max(220, content.width - (content.sidebarWidth > 0 || split.resizing ? trackList.minimumWidth : trackList.idealWidth))
                library: content.library
                bottomInset: bar.height
            }
            Rectangle {
                SplitView.fillWidth: true
                SplitView.minimumWidth: trackList.minimumWidth
                color: Theme.colors.table

                Row {
                    id: toolbar

                    anchors.right: parent.right
                    anchors.rightMargin: 12
                    y: 12
                    spacing: 8

                    SearchField {
                        id: search

                        anchors.verticalCenter: parent.verticalCenter
                        placeholderText: "搜索音乐"
                        text: content.library.searchText
                        onTextEdited: content.library.searchText = text
                        onTextChanged: content.library.searchText = text
                    }
                    IconButton {
                        anchors.verticalCenter: parent.verticalCenter
                        iconName: "folder-add"
                        help: "添加文件夹"
                        onClicked: content.library.addFolderViaPanel()
                    }
                }
                TrackListView {
                    id: trackList

                    anchors.fill: parent
                    anchors.topMargin: Theme.toolbarHeight
                    library: content.library
                    player: content.player
                    bottomInset: bar.height
                }
            }
        }
    }
    FolderDrop {
        id: folderDrop

        library: content.library
    }
    DropArea {
        id: dropArea

        anchors.fill: parent
        keys: ["text/uri-list"]
        onEntered: drag => {
            drag.accepted = folderDrop.holdsFolder(drag.urls);
        }
        onDropped: drop => {
            folderDrop.add(drop.urls);
            drop.accept(Qt.CopyAction);
        }
    }
    FocusRing {
        inset: 4
        shown: dropArea.containsDrag
    }
    PlayerBarView {
        id: bar

        anchors.bottom: parent.bottom
        width: parent.width
        player: content.player
        library: content.library
        backdrop: columns
    }
}
