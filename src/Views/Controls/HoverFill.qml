import QtQuick

/// The fill below something the pointer is over. It fades in and out.
Rectangle {
    id: fill

    required property bool shown

    opacity: shown ? 1 : 0
    Behavior on opacity {
        NumberAnimation { duration: fill.shown ? Theme.fadeIn : Theme.fadeOut; easing.type: Easing.OutCubic }
    }
}
