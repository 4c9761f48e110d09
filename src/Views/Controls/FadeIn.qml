import QtQuick

/// How menus and tooltips appear.
Transition {
    NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.fadeIn; easing.type: Theme.easeOut }
}
