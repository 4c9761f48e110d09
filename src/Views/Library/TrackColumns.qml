import QtQuick

/// Where the columns of the track table stand, for its header and its rows alike. 艺人 and 专辑 have
/// their ideal widths as long as the free first column keeps enough room for a title, and shrink
/// together to their least widths when it doesn't.
QtObject {
    /// From the left edge of a row's content to its right edge.
    required property real contentWidth

    readonly property int gap: 12
    readonly property int durationWidth: 60
    readonly property int leastTitleWidth: 200
    readonly property int minimumContentWidth: leastTitleWidth + 100 + 120 + durationWidth + 3 * gap
    readonly property int idealContentWidth: minimumContentWidth + 60 + 80
    /// From 0, the least widths, to 1, the ideal ones.
    readonly property real share: Math.max(0, Math.min(1, (contentWidth - minimumContentWidth) / (idealContentWidth - minimumContentWidth)))
    readonly property real artistWidth: Math.round(100 + 60 * share)
    readonly property real albumWidth: Math.round(120 + 80 * share)

    readonly property real durationX: contentWidth - durationWidth
    readonly property real albumX: durationX - gap - albumWidth
    readonly property real artistX: albumX - gap - artistWidth
    readonly property real titleWidth: Math.max(0, artistX - gap)
}
