import QtQuick

/// Mouse and touch input on a list row. The mouse selects on press and doesn't drag the list. A finger
/// may be about to scroll, so it selects on release if it hasn't moved.
MouseArea {
    id: area

    property bool isFinger: false
    /// Whether the mouse is over the row; a lifted finger doesn't hover.
    readonly property bool hovered: containsMouse && !isFinger

    signal chosen(x: real)

    hoverEnabled: true
    // The list must see the press too, or it couldn't be dragged by finger.
    preventStealing: pressed && !isFinger
    onPressed: mouse => {
        isFinger = mouse.source !== Qt.MouseEventNotSynthesized;
        if (!isFinger && mouse.button === Qt.LeftButton)
            chosen(mouse.x);
    }
    onClicked: mouse => {
        if (isFinger)
            chosen(mouse.x);
    }
    onPositionChanged: {
        if (!pressed)
            isFinger = false;
    }
}
