import QtQuick

/// The soft shadow of a floating surface with rounded corners: rectangles that add up to a blur of 24
/// at an offset of 8. Menus are small and short-lived, so a few rectangles are enough.
Item {
    id: shadow

    Repeater {
        model: 12

        // The linter doesn't know ids outside a component.
        // qmllint disable unqualified
        Rectangle {
            required property int index
            readonly property int spread: 24 - 2 * index - 12

            x: -spread
            y: 8 - spread
            width: shadow.width + 2 * spread
            height: shadow.height + 2 * spread
            radius: Math.max(Theme.radius + spread, 2)
            color: "#000000"
            opacity: 0.0165
        }
        // qmllint enable unqualified
    }
}
