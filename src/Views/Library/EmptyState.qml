import QtQuick
import Tamsy.Controls

/// An icon above a headline and a line that says what to do.
Column {
    id: state

    required property string iconName
    required property string title
    required property string message
    property ThemeColors colors: Theme.colors

    spacing: 8

    Icon {
        anchors.horizontalCenter: parent.horizontalCenter
        name: state.iconName
        size: 40
        color: state.colors.text2
    }
    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        text: state.title
        textFormat: Text.PlainText
        font.pixelSize: Theme.headlineSize
        font.weight: Font.DemiBold
        color: state.colors.text
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        text: state.message
        textFormat: Text.PlainText
        font.pixelSize: Theme.bodySize
        color: state.colors.text2
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
