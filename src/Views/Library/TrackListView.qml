import QtQuick
import QtQuick.Controls
import Tamsy.Controls
import Tamsy.Library

/// The table of the selected folder's tracks; selecting one plays it.
Item {
    id: view

    required property LibraryViewModel library
    required property PlayerViewModel player
    /// The selected track's identity, or empty. Unchanged when the list changes.
    property string selection: ""
    /// Height at the bottom that something covers.
    property int bottomInset: Theme.playerBarHeight
    /// Leaves 200 points for the title, with the other columns at their minimum widths.
    readonly property int minimumWidth: tableColumns.minimumContentWidth + margins
    /// The same with the other columns at their ideal widths.
    readonly property int idealWidth: tableColumns.idealContentWidth + margins
    readonly property int margins: 32

    // Only the user changes the selection, so filtering never plays anything.
    onSelectionChanged: {
        const url = tracks.urlOf(selection);
        if (url !== undefined)
            player.play(url);
    }

    /// Scrolls to the current track's row, if it is listed.
    function revealCurrent(): void {
        const row = tracks.indexOfAddress(player.currentAddress);
        if (row >= 0)
            list.reveal(row);
    }

    // The linter doesn't know the base class of a C++ model.
    // qmllint disable
    TrackListModel {
        id: tracks
        library: view.library
    }
    // qmllint enable
    TrackColumns {
        id: tableColumns
        contentWidth: view.width - view.margins
    }
    EmptyState {
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.round((parent.height - view.bottomInset - height) / 2)
        visible: !view.library.hasSelectedFolder
        iconName: "folder"
        title: "未选择文件夹"
        message: "请在左侧添加并选择一个文件夹"
    }
    TrackTableHeader {
        id: header
        width: parent.width
        visible: view.library.hasSelectedFolder
        columns: tableColumns
    }
    RowList {
        id: list

        property bool wasSelectedBefore: false

        anchors.fill: parent
        anchors.topMargin: header.height
        topMargin: 4
        bottomMargin: 2 * bottomInset // leaves some space
        rowHeight: Theme.trackRowHeight
        bottomInset: view.bottomInset
        visible: header.visible
        model: tracks
        currentIndex: -1
        reuseItems: true
        // Covers are loaded only for visible rows.
        cacheBuffer: 0
        Accessible.role: Accessible.Table
        Accessible.name: AccessibleNames.tracks

        /// Moves the selection by keyboard, within the list.
        function moveTo(row: int): void {
            if (count === 0)
                return;
            usedByKeyboard = true;
            const target = Math.max(0, Math.min(count - 1, row));
            view.selection = tracks.idAt(target);
            reveal(target);
        }
        /// Restarts the selected track; plays the first one if none is selected.
        function playSelected(row: int): void {
            if (row < 0)
                moveTo(0);
            else
                view.player.play(tracks.urlOf(view.selection));
        }
        function pageRows(): int {
            return Math.max(1, Math.floor((height - topMargin - bottomInset) / rowHeight) - 1);
        }
        Keys.onPressed: event => {
            const row = tracks.indexOf(view.selection);
            switch (event.key) {
            case Qt.Key_Up: moveTo(row < 0 ? count - 1 : row - 1); break;
            case Qt.Key_Down: moveTo(row + 1); break;
            case Qt.Key_PageUp: moveTo(row - pageRows()); break;
            case Qt.Key_PageDown: moveTo(row + pageRows()); break;
            case Qt.Key_Home: moveTo(0); break;
            case Qt.Key_End: moveTo(count - 1); break;
            case Qt.Key_Return:
            case Qt.Key_Enter: playSelected(row); break;
            default: return;
            }
            event.accepted = true;
        }

        // The linter doesn't know ids outside a component.
        // qmllint disable unqualified
        delegate: TrackRow {
            width: list.width
            columns: tableColumns
            player: view.player
            selected: trackId === view.selection
            hasListFocus: list.activeFocus
            showsKeyboardFocus: list.showsKeyboardFocus
            onChosen: {
                list.focusByPointer();
                list.wasSelectedBefore = selected;
                view.selection = trackId;
            }
            // The press has selected the row; only a second click on its title restarts the track.
            onClicked: onTitle => {
                if (onTitle && list.wasSelectedBefore)
                    view.player.play(tracks.urlOf(trackId));
            }
        }
        // qmllint enable unqualified
    }
    FocusRing {
        shown: list.showsKeyboardFocus && tracks.indexOf(view.selection) < 0
        inset: 4
    }
}
