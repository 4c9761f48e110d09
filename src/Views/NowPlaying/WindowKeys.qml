import QtQuick
import Tamsy.Controls

/// The menu shortcuts, for a window without menus. A modal sheet blocks the shortcuts of the window
/// below, so it has its own.
Item {
    id: keys

    required property PlayerViewModel player
    required property LyricsFontSize lyricsFontSize

    Shortcut {
        sequence: "Ctrl+Left"
        onActivated: keys.player.previous()
    }
    Shortcut {
        sequence: "Ctrl+Right"
        onActivated: keys.player.next()
    }
    Shortcut {
        sequence: "Ctrl++"
        onActivated: keys.lyricsFontSize.increase()
    }
    Shortcut {
        sequence: "Ctrl+-"
        onActivated: keys.lyricsFontSize.decrease()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: Qt.quit()
    }
    Shortcut {
        sequence: "Ctrl+W"
        onActivated: keys.Window.window.close()
    }
}
