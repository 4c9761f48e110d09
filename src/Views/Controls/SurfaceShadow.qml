import QtQuick

/// The soft shadow of a floating surface with rounded corners: rings that add up to a blur of 24 below
/// a surface 8 higher. Menus are small and short-lived, so a handful of rectangles serves.
Item {
    id: shadow

    Repeater {
        model: 12

        // Ids around a component are unknown to the checker.
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
