import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// Synced lyrics: the current line is at the top, later ones follow below.
Item {
    id: panel

    required property LyricsPanelModel lyrics
    required property real size
    required property real shade

    // Cuts the lines off, but not the shadow of the one at the top.
    Item {
        id: frame

        readonly property int shadowRoom: 20

        anchors.fill: parent
        anchors.topMargin: 300 - shadowRoom
        clip: true

        ListView {
            id: list

            /// The scroll position with the current line at the top. Lines above are past and invisible.
            property real currentTop: 0
            readonly property real lowestTop: Math.max(currentTop, originY + contentHeight + 50 - height)

            anchors.fill: parent
            anchors.topMargin: frame.shadowRoom
            leftMargin: 30
            rightMargin: 30
            // Lets the last line scroll to the top.
            bottomMargin: height
            spacing: panel.size * 48 / 46
            reuseItems: true
            cacheBuffer: 200
            boundsBehavior: Flickable.StopAtBounds
            model: panel.lyrics
            Accessible.role: Accessible.List
            Accessible.name: AccessibleNames.lyrics

            // The linter doesn't know ids outside a component.
            // qmllint disable unqualified
            delegate: LyricLine {
                width: list.width - 60
                currentLyricIndex: panel.lyrics.shownLyricIndex
                size: panel.size
                shade: panel.shade
            }
            // qmllint enable unqualified

            /// Scrolls the current line to the top at once.
            function settle(): void {
                animation.stop();
                forceLayout(); // or the line's old position would be used
                positionViewAtIndex(panel.lyrics.shownLyricIndex, ListView.Beginning);
                currentTop = contentY;
            }
            function scrollToCurrent(): void {
                animation.stop();
                const start = contentY;
                positionViewAtIndex(panel.lyrics.shownLyricIndex, ListView.Beginning);
                currentTop = contentY;
                // A jump over many lines animates only its last part, with the line in sight.
                animation.from = Math.abs(currentTop - start) <= height ? start : currentTop + (start < currentTop ? -height : height) / 2;
                animation.to = currentTop;
                animation.restart();
            }
            // The user can't scroll past the lyrics.
            onContentYChanged: {
                if (!moving)
                    return;
                const held = Math.max(currentTop, Math.min(lowestTop, contentY));
                if (held !== contentY)
                    contentY = held;
            }
            onWidthChanged: settling.restart()
            onHeightChanged: settling.restart()
            Component.onCompleted: settle()

            NumberAnimation {
                id: animation

                target: list
                property: "contentY"
                duration: Theme.lyricsScroll
                easing.type: Theme.easeInOut
            }
        }
    }
    // Runs once for all simultaneous changes.
    Timer {
        id: settling

        interval: 0
        onTriggered: list.settle()
    }
    onSizeChanged: settling.restart()
    Connections {
        target: panel.lyrics // qmllint disable
        function onLyricsChanged(): void {
            settling.restart();
        }
        function onShownLyricIndexChanged(): void {
            list.scrollToCurrent();
        }
        function onCurrentLyricIndexChanged(): void {
            NowPlayingLog.log("lyrics scrollTo index=" + panel.lyrics.currentLyricIndex);
        }
    }
}
