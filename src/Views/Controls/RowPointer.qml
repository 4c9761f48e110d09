import QtQuick

/// Mouse and finger on a row of a list. A mouse chooses the row when its button goes down, and doesn't
/// drag the list. A finger may be about to scroll: it chooses when it is lifted without having moved.
MouseArea {
    id: area

    property bool isFinger: false
    /// Under a mouse; a finger that has left hovers nowhere.
    readonly property bool hovered: containsMouse && !isFinger

    signal chosen(x: real)

    hoverEnabled: true
    // A list that is kept from the press would never learn of a finger's.
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
