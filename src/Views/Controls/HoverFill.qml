import QtQuick

/// The fill of a hovered item. It fades in and out.
Rectangle {
    id: fill

    required property bool shown

    opacity: shown ? 1 : 0
    Behavior on opacity {
        NumberAnimation { duration: fill.shown ? Theme.fadeIn : Theme.fadeOut; easing.type: Theme.easeOut }
    }
}
