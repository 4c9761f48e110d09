pragma Singleton

import QtQuick
import Tamsy.Controls

/// The values that all views share: palettes, sizes and radii (points), durations (milliseconds)
/// and easings.
QtObject {
    readonly property ThemeColors colors: ThemeColors {
        dark: Appearance.dark
    }

    /// The palette of the Now Playing window, which is always dark.
    readonly property ThemeColors onArt: ThemeColors {
        dark: true
    }
    readonly property color accentOnArt: "#8CF5DA"

    readonly property int smallSize: 12
    readonly property int bodySize: 14
    readonly property int headlineSize: 16

    readonly property int smallRadius: 4
    readonly property int radius: 8
    readonly property int largeRadius: 12

    readonly property int fadeIn: 120
    readonly property int fadeOut: 180
    readonly property int surfaceOut: 80
    readonly property int sheetIn: 200
    readonly property int sheetOut: 140
    readonly property int thumbIn: 80
    readonly property int thumbOut: 160
    readonly property int toolTipDelay: 600
    readonly property int lyricsSlide: 250
    readonly property int lyricsScroll: 400
    readonly property int lyricsFade: 300
    readonly property int scrollBarRest: 800
    readonly property int scrollBarOut: 400

    readonly property int easeOut: Easing.OutCubic
    readonly property int easeIn: Easing.InCubic
    readonly property int easeInOut: Easing.InOutQuad

    readonly property int controlHeight: 32
    readonly property int menuItemHeight: 28
    readonly property int folderRowHeight: 32
    readonly property int trackRowHeight: 36
    readonly property int pickerRowHeight: 48
    readonly property int playerBarHeight: 72
    readonly property int toolbarHeight: 56
    readonly property int tableHeaderHeight: 32

    readonly property real barOpacity: 0.72
    readonly property real barOpacityWithoutBlur: 0.92
}
