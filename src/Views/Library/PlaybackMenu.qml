import QtQuick
import Tamsy.Controls

/// The menu for play, pause, next and previous.
AppMenu {
    id: menu

    required property PlayerViewModel player

    minWidth: 196
    title: "播放控制"

    ShortcutAction {
        text: "播放 / 暂停"
        shortcut: "Space"
        shortcutText: "Space"
        onTriggered: menu.player.togglePlayPause()
    }
    ShortcutAction {
        text: "上一首"
        shortcut: "Ctrl+Left"
        shortcutText: "Ctrl+←"
        onTriggered: menu.player.previous()
    }
    ShortcutAction {
        text: "下一首"
        shortcut: "Ctrl+Right"
        shortcutText: "Ctrl+→"
        onTriggered: menu.player.next()
    }
}
