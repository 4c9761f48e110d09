import QtQuick

/// The columns of the track table, for its header and its rows. 艺人 and 专辑 have their ideal widths
/// while the flexible first column is wide enough for a title; otherwise they shrink together to their
/// minimum widths.
QtObject {
    /// The width of a row's content.
    required property real contentWidth

    readonly property int gap: 12
    readonly property int durationWidth: 60
    readonly property int minTitleWidth: 200
    readonly property int minimumContentWidth: minTitleWidth + 100 + 120 + durationWidth + 3 * gap
    readonly property int idealContentWidth: minimumContentWidth + 60 + 80
    /// From 0 (minimum widths) to 1 (ideal widths).
    readonly property real share: Math.max(0, Math.min(1, (contentWidth - minimumContentWidth) / (idealContentWidth - minimumContentWidth)))
    readonly property real artistWidth: Math.round(100 + 60 * share)
    readonly property real albumWidth: Math.round(120 + 80 * share)

    readonly property real durationX: contentWidth - durationWidth
    readonly property real albumX: durationX - gap - albumWidth
    readonly property real artistX: albumX - gap - artistWidth
    readonly property real titleWidth: Math.max(0, artistX - gap)
}
