import QtQuick

/// Input on a list row. The mouse selects on press and doesn't drag the list. A finger may be about to
/// scroll, so it selects on release if it hasn't moved.
PointerArea {
    id: area

    signal chosen(x: real)

    // The list must see the press too, or it couldn't be dragged by finger.
    preventStealing: pressed && !isFinger
    onPressed: mouse => {
        if (!isFinger && mouse.button === Qt.LeftButton)
            chosen(mouse.x);
    }
    onClicked: mouse => {
        if (isFinger)
            chosen(mouse.x);
    }
}
