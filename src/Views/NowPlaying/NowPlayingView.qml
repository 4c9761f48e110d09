import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// The Now Playing window's content: cover and controls on the cover's colours, with optional lyrics
/// beside them.
Item {
    id: view

    required property PlayerViewModel player
    required property LibraryViewModel library
    required property LyricsFontSize lyricsFontSize
    /// Whether any part of the window can be seen.
    required property bool canBeSeen
    property bool showLyrics: false
    property bool showPlaylistPicker: false
    /// The wide layout, chosen by the width alone.
    readonly property bool isFullScreen: width >= 1000

    // The linter doesn't know the base class of a C++ model.
    // qmllint disable
    NowPlayingModel {
        id: model

        player: view.player
        library: view.library
        isShown: view.Window.visibility !== Window.Hidden && view.Window.visibility !== Window.Minimized
    }
    // qmllint enable
    function appear(): void {
        model.appear();
        NowPlayingLog.log(model.hasImage ? "artwork view appear" : "artwork placeholder appear");
        NowPlayingLog.log("info labels appear");
    }
    function toggleLyrics(): void {
        if (!showLyrics)
            model.loadLyrics();
        showLyrics = !showLyrics;
        NowPlayingLog.log("toggle lyrics -> " + (showLyrics ? "ON" : "OFF"));
    }

    ArtworkGradientBackground {
        id: background

        anchors.fill: parent
        visible: model.hasImage
        player: view.player
        image: model.image // qmllint disable
        isFullScreen: view.isFullScreen
        canBeSeen: view.canBeSeen
    }
    Loader {
        anchors.fill: parent
        active: !model.hasImage
        sourceComponent: NeutralBackground {}
    }
    Item {
        id: halves

        /// The progress of the lyrics' transition, 0 to 1.
        property real opened: view.showLyrics ? 1 : 0

        anchors.fill: parent
        Behavior on opened {
            NumberAnimation { duration: Theme.lyricsSlide; easing.type: Theme.easeInOut }
        }

        MainContent {
            id: mainContent

            width: Math.round(parent.width * (1 - halves.opened / 2))
            height: parent.height
            model: model
            player: view.player
            isFullScreen: view.isFullScreen
            shade: background.textShadowStrength
        }
        Loader {
            anchors.left: mainContent.right
            width: Math.round(parent.width / 2)
            height: parent.height
            active: halves.opened > 0
            opacity: halves.opened
            sourceComponent: LyricsPanel {
                lyrics: model.lyrics
                lyricsFontSizePoints: view.lyricsFontSize.points
                shade: background.textShadowStrength
            }
        }
    }
    CornerButtons {
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        showLyrics: view.showLyrics
        shade: background.textShadowStrength
        onListRequested: {
            view.showPlaylistPicker = true;
            NowPlayingLog.log("open playlist picker");
        }
        onLyricsToggled: view.toggleLyrics()
    }
    Loader {
        active: view.showPlaylistPicker
        sourceComponent: NowPlayingTrackPickerSheet {
            player: view.player
            library: view.library
            lyricsFontSize: view.lyricsFontSize
            windowHeight: view.height
            onClosed: view.showPlaylistPicker = false
            Component.onCompleted: open()
        }
    }
}
