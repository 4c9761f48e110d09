import QtQuick
import QtQuick.Controls.impl

/// An icon in one colour.
Item {
    id: icon

    required property string name
    property int size: 20
    property alias color: image.color

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    IconImage {
        id: image

        anchors.fill: parent
        source: icon.name === "" ? "" : "qrc:/icons/" + icon.name + ".svg"
        sourceSize.width: icon.size
        sourceSize.height: icon.size
    }
}
