import QtQuick
import Tamsy.Controls

/// The shortcuts of the menus in a window without menus. A modal sheet blocks those of the window
/// below it, so it has some of its own.
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
