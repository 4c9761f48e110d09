import QtQuick

/// How menus and tooltips disappear.
Transition {
    NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.surfaceOut; easing.type: Theme.easeOut }
}
