import QtQuick
import QtQuick.Controls

/// A hairline between groups of a menu.
MenuSeparator {
    topPadding: 4
    bottomPadding: 4
    leftPadding: 8
    rightPadding: 8
    contentItem: Rectangle {
        implicitHeight: 1
        color: Theme.colors.separator
    }
    background: null
}
