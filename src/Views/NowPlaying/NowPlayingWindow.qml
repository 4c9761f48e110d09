import QtQuick
import QtQuick.Controls
import Tamsy.Controls
import Tamsy.NowPlaying

/// The Now Playing window. Closing it only hides it.
ApplicationWindow {
    id: window

    required property PlayerViewModel player
    required property LibraryViewModel library
    required property LyricsFontSize lyricsFontSize
    /// Whether any part of the window can be seen.
    property bool canBeSeen: true

    width: 1200
    height: 800
    title: "Tamsy Music"
    color: "#000000"
    visible: false

    palette {
        window: Theme.onArt.chrome
        button: Theme.onArt.button
        base: Theme.onArt.table
        alternateBase: Theme.onArt.alternate
        windowText: Theme.onArt.text
        text: Theme.onArt.text
        buttonText: Theme.onArt.text
        highlight: Theme.onArt.selectedActive
        highlightedText: Theme.onArt.text
        placeholderText: Theme.onArt.placeholder
        toolTipBase: Theme.onArt.tip
        toolTipText: Theme.onArt.tipText
        mid: Theme.onArt.separator
        dark: Theme.onArt.fieldBorder
        link: Theme.onArt.accent
    }

    onVisibleChanged: {
        if (visible)
            view.appear();
    }

    Shortcut {
        sequence: "Space"
        onActivated: window.player.togglePlayPause()
    }
    Shortcut {
        sequence: "Up"
        onActivated: window.player.volume = Math.min(1, window.player.volume + 0.05)
    }
    Shortcut {
        sequence: "Down"
        onActivated: window.player.volume = Math.max(0, window.player.volume - 0.05)
    }
    Shortcut {
        sequence: "F11"
        onActivated: window.visibility = window.visibility === Window.FullScreen ? Window.Windowed : Window.FullScreen
    }
    Shortcut {
        sequence: "Escape"
        enabled: window.visibility === Window.FullScreen
        onActivated: window.visibility = Window.Windowed
    }
    WindowKeys {
        player: window.player
        lyricsFontSize: window.lyricsFontSize
    }
    NowPlayingView {
        id: view

        anchors.fill: parent
        player: window.player
        library: window.library
        lyricsFontSize: window.lyricsFontSize
        canBeSeen: window.canBeSeen
    }
}
