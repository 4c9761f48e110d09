import QtQuick
import QtQuick.Controls.impl

/// One of our icons in one ink.
IconImage {
    required property string name
    property int size: 20

    source: name === "" ? "" : "qrc:/icons/" + name + ".svg"
    sourceSize: Qt.size(size, size)
    width: size
    height: size
    Accessible.ignored: true
}
