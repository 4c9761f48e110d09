import QtQuick
import QtQuick.Controls

/// A tooltip below its owner.
ToolTip {
    id: tip

    property ThemeColors colors: Theme.colors

    delay: Theme.toolTipDelay
    y: parent ? parent.height + 4 : 0
    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    margins: 8
    topPadding: 4
    bottomPadding: 4
    leftPadding: 8
    rightPadding: 8

    contentItem: Text {
        text: tip.text
        textFormat: Text.PlainText
        font.pixelSize: Theme.smallSize
        color: tip.colors.tipText
    }
    background: Rectangle {
        color: tip.colors.tip
        radius: Theme.smallRadius
    }
    enter: FadeIn {}
    exit: FadeOut {}
}
