import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import Tamsy.Controls
import Tamsy.Library

/// The main window: menus, content, folder panel. Closing it quits the program, even if another window
/// is open.
ApplicationWindow {
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
    title: "Tamsy Music"
    onClosing: Qt.quit()
    color: Theme.colors.chrome

    palette {
        window: Theme.colors.chrome
        button: Theme.colors.button
        base: Theme.colors.table
        alternateBase: Theme.colors.alternate
        windowText: Theme.colors.text
        text: Theme.colors.text
        buttonText: Theme.colors.text
        highlight: Theme.colors.selectedActive
        highlightedText: Theme.colors.text
        placeholderText: Theme.colors.placeholder
        toolTipBase: Theme.colors.tip
        toolTipText: Theme.colors.tipText
        mid: Theme.colors.separator
        dark: Theme.colors.fieldBorder
        link: Theme.colors.accent
        disabled {
            windowText: Theme.colors.disabled
            text: Theme.colors.disabled
            buttonText: Theme.colors.disabled
        }
    }

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
        function onRequested(prompt: string, message: string, startFolder: url) {
            folderDialog.currentFolder = startFolder;
            folderDialog.title = message;
            folderDialog.acceptLabel = prompt;
            folderDialog.open();
        }
    }
}
