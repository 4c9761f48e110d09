import QtQuick

/// Mouse and touch input that knows one from the other: a lifted finger doesn't hover.
MouseArea {
    id: area

    property bool isFinger: false
    readonly property bool hovered: containsMouse && !isFinger

    hoverEnabled: true
    onPressed: mouse => {
        isFinger = mouse.source !== Qt.MouseEventNotSynthesized;
    }
    onPositionChanged: {
        if (!pressed)
            isFinger = false;
    }
}
