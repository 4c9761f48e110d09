import QtQuick

/// White text on the cover's colours.
Text {
    /// The strength of the shadow that the background requires, 0 to 1.
    property real shade: 0
    /// Draws an outline, for text outside a layer with a shadow.
    property bool carriesShade: GraphicsInfo.api === GraphicsInfo.Software
    readonly property bool isOutlined: shade > 0 && carriesShade

    textFormat: Text.PlainText
    color: "#FFFFFF"
    elide: Text.ElideRight
    maximumLineCount: 1
    style: isOutlined ? Text.Outline : Text.Normal
    styleColor: Qt.rgba(0, 0, 0, 0.35 * shade)
    Accessible.ignored: text === ""
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
