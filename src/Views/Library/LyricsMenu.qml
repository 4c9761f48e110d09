import QtQuick
import Tamsy.Controls

/// The menu for the lyrics font size.
AppMenu {
    id: menu

    required property LyricsFontSize lyricsFontSize

    minWidth: 196
    title: "歌词显示"

    ShortcutAction {
        id: increase
        text: "增大字号"
        shortcut: "Ctrl++"
        shortcutText: "Ctrl++"
        onTriggered: menu.lyricsFontSize.increase()
    }
    ShortcutAction {
        text: "减小字号"
        shortcut: "Ctrl+-"
        shortcutText: "Ctrl+-"
        onTriggered: menu.lyricsFontSize.decrease()
    }
    AppMenuSeparator {}
    ShortcutAction {
        text: "恢复默认大小"
        onTriggered: menu.lyricsFontSize.reset()
    }
}
