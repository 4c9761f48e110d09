import QtQuick
import Tamsy.NowPlaying

/// The right half of the window: the lyrics of the current track.
Item {
    id: lyricsPanel

    required property LyricsPanelModel lyrics
    /// In points, as set in the main window's menu.
    required property real lyricsFontSizePoints
    required property real shade

    LyricText {
        id: placeholder

        anchors.centerIn: parent
        width: parent.width
        height: measure.implicitHeight
        visible: lyricsPanel.lyrics.count === 0
        text: "暂无歌词"
        shade: lyricsPanel.shade
        size: Math.max(lyricsPanel.lyricsFontSizePoints * 0.45, 14)
        weight: Font.Normal
        ink: Qt.rgba(1, 1, 1, 0.5)
        blurred: false
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.StaticText
        Accessible.name: text

        Text {
            id: measure

            visible: false
            text: placeholder.text
            font.pixelSize: placeholder.size
        }
    }
    Loader {
        anchors.fill: parent
        active: lyricsPanel.lyrics.count > 0 && lyricsPanel.lyrics.isSynced
        sourceComponent: SyncedLyrics {
            lyrics: lyricsPanel.lyrics
            size: lyricsPanel.lyricsFontSizePoints
            shade: lyricsPanel.shade
        }
    }
    Loader {
        anchors.fill: parent
        active: lyricsPanel.lyrics.count > 0 && !lyricsPanel.lyrics.isSynced
        sourceComponent: PlainLyrics {
            lyrics: lyricsPanel.lyrics
            size: lyricsPanel.lyricsFontSizePoints
            shade: lyricsPanel.shade
        }
    }
}
