import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// The Now Playing window. Closing it only hides it.
AppWindow {
    id: window

    required property PlayerViewModel player
    required property LibraryViewModel library
    required property LyricsFontSize lyricsFontSize
    /// Whether any part of the window can be seen.
    property bool canBeSeen: true
    /// What the end of the full screen goes back to.
    property int visibilityBefore: Window.Windowed

    function toggleFullScreen() {
        const isFull = visibility === Window.FullScreen;
        if (!isFull)
            visibilityBefore = visibility;
        visibility = isFull ? visibilityBefore : Window.FullScreen;
    }

    width: 1200
    height: 800
    color: "#000000"
    colors: Theme.onArt
    visible: false

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
        onActivated: window.toggleFullScreen()
    }
    Shortcut {
        sequence: "Escape"
        enabled: window.visibility === Window.FullScreen
        onActivated: window.toggleFullScreen()
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
