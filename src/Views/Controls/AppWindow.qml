import QtQuick
import QtQuick.Controls

/// A window whose toolkit controls, and the title bar that Qt may paint, have the theme's colours.
ApplicationWindow {
    id: window

    property ThemeColors colors: Theme.colors

    title: "Tamsy Music"

    palette {
        window: window.colors.chrome
        button: window.colors.button
        base: window.colors.table
        alternateBase: window.colors.alternate
        windowText: window.colors.text
        text: window.colors.text
        buttonText: window.colors.text
        highlight: window.colors.selectedActive
        highlightedText: window.colors.text
        placeholderText: window.colors.placeholder
        toolTipBase: window.colors.tip
        toolTipText: window.colors.tipText
        mid: window.colors.separator
        dark: window.colors.fieldBorder
        link: window.colors.accent
        disabled {
            windowText: window.colors.disabled
            text: window.colors.disabled
            buttonText: window.colors.disabled
        }
    }
}
