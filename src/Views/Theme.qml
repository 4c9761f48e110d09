pragma Singleton

import QtQuick
import Tamsy.Views

/// What all views share: the palettes, sizes of type, radii and durations (points and milliseconds).
QtObject {
    readonly property ThemeColors colors: ThemeColors {
        dark: Appearance.dark
    }

    readonly property int smallSize: 12
    readonly property int bodySize: 14
    readonly property int headlineSize: 16

    readonly property int smallRadius: 4
    readonly property int radius: 8

    readonly property int fadeIn: 120
    readonly property int fadeOut: 180
    readonly property int surfaceOut: 80
    readonly property int toolTipDelay: 600

    readonly property real barOpacity: 0.72
    readonly property real barOpacityWithoutBlur: 0.92
}
