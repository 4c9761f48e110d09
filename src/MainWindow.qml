import QtQuick
import QtQuick.Dialogs
import Tamsy.Controls
import Tamsy.Library

/// The main window: menus, content, folder panel. Closing it quits the program, even if another window
/// is open.
AppWindow {
    id: window

    required property LibraryViewModel library
    required property PlayerViewModel player
    required property LyricsFontSize lyricsFontSize
    required property FolderPanelController folderPanel

    property alias sidebarWidth: content.sidebarWidth

    width: 1100
    height: 720
    minimumWidth: content.minimumWidth
    minimumHeight: 400
    onClosing: Qt.quit()
    color: colors.chrome

    menuBar: AppMenuBar {
        id: menus

        PlaybackMenu {
            player: window.player
        }
        LyricsMenu {
            lyricsFontSize: window.lyricsFontSize
        }
    }
    Shortcut {
        sequence: "F10"
        onActivated: menus.openFirst()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: Qt.quit()
    }
    Shortcut {
        sequence: "Ctrl+W"
        onActivated: window.close()
    }

    Shortcut {
        sequence: "Ctrl+F"
        onActivated: content.focusSearch()
    }
    Shortcut {
        sequence: "Ctrl+L"
        onActivated: content.revealCurrentTrack()
    }

    ContentView {
        id: content

        anchors.fill: parent
        library: window.library
        player: window.player
    }

    FolderDialog {
        id: folderDialog
        onAccepted: window.folderPanel.finish(selectedFolder)
        onRejected: window.folderPanel.finish("")
    }
    Connections {
        target: window.folderPanel
        function onRequested(prompt: string, message: string, startFolder: url): void {
            folderDialog.currentFolder = startFolder;
            folderDialog.title = message;
            folderDialog.acceptLabel = prompt;
            folderDialog.open();
        }
    }
}
