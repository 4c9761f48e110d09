import QtQuick

/// The wrapped text of a lyric line.
ArtText {
    elide: Text.ElideNone
    maximumLineCount: 2147483647
    wrapMode: Text.Wrap
    Accessible.ignored: true
}
