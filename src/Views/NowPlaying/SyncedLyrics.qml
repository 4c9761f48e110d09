import QtQuick
import Tamsy.Controls
import Tamsy.NowPlaying

/// Synced lyrics: the line that is sung stands at the top, the later ones follow below it.
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

            /// Where the current line stands at the top. What lies above has been sung and is gone.
            property real currentTop: 0
            readonly property real lowestTop: Math.max(currentTop, originY + contentHeight + 50 - height)

            anchors.fill: parent
            anchors.topMargin: frame.shadowRoom
            leftMargin: 30
            rightMargin: 30
            // The last line reaches the top, too.
            bottomMargin: height
            spacing: panel.size * 48 / 46
            reuseItems: true
            cacheBuffer: 200
            boundsBehavior: Flickable.StopAtBounds
            model: panel.lyrics
            Accessible.role: Accessible.List
            Accessible.name: AccessibleNames.lyrics

            // Ids around a component are unknown to the checker.
            // qmllint disable unqualified
            delegate: LyricLine {
                width: list.width - 60
                currentLyricIndex: panel.lyrics.shownLyricIndex
                size: panel.size
                shade: panel.shade
            }
            // qmllint enable unqualified

            /// Brings the current line to the top at once.
            function settle() {
                animation.stop();
                forceLayout(); // else the line is looked for where it was
                positionViewAtIndex(panel.lyrics.shownLyricIndex, ListView.Beginning);
                currentTop = contentY;
            }
            function scrollToCurrent() {
                animation.stop();
                const start = contentY;
                positionViewAtIndex(panel.lyrics.shownLyricIndex, ListView.Beginning);
                currentTop = contentY;
                // A jump over many lines travels the last stretch only, with the line in sight.
                animation.from = Math.abs(currentTop - start) <= height ? start : currentTop + (start < currentTop ? -height : height) / 2;
                animation.to = currentTop;
                animation.restart();
            }
            // The user's own scrolling ends where the lyrics do.
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
                duration: 400
                easing.type: Easing.InOutQuad
            }
        }
    }
    // Once, after all that has changed together.
    Timer {
        id: settling

        interval: 0
        onTriggered: list.settle()
    }
    onSizeChanged: settling.restart()
    Connections {
        target: panel.lyrics // qmllint disable
        function onLyricsChanged() {
            settling.restart();
        }
        function onShownLyricIndexChanged() {
            list.scrollToCurrent();
        }
        function onCurrentLyricIndexChanged() {
            NowPlayingLog.log("lyrics scrollTo index=" + panel.lyrics.currentLyricIndex);
        }
    }
}
