import QtQuick

/// The letters of a lyric line, wrapped over as many rows as it takes.
ArtText {
    elide: Text.ElideNone
    maximumLineCount: 2147483647
    wrapMode: Text.Wrap
    Accessible.ignored: true
}
