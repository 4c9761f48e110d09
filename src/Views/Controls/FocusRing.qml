import QtQuick

/// The ring that shows keyboard focus, around or inside its parent.
Rectangle {
    id: ring

    property bool shown: false
    /// Distance from the parent's edge to the ring; negative values are outside.
    property int inset: 0
    property real parentRadius: Theme.radius
    property color ink: Theme.colors.focus

    anchors.fill: parent
    anchors.margins: inset
    radius: Math.max(0, parentRadius - inset)
    color: "transparent"
    border.width: 2
    border.color: ink
    visible: shown
}
