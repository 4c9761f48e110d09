import QtQuick
import Tamsy.Controls

/// The title and artist of the current track, centred.
Item {
    id: labels

    required property string title
    required property string artist
    required property real shade
    /// The width that the longer text needs.
    readonly property real textWidth: Math.max(titleText.implicitWidth, artistText.implicitWidth)

    // The lines exceed the height by some points, above and below alike.
    height: 50

    Column {
        anchors.centerIn: parent
        spacing: 6

        ArtText {
            id: titleText

            width: labels.width
            height: 30
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            text: labels.title
            shade: labels.shade
            font.pixelSize: 26
            font.weight: Font.DemiBold

            HoverHandler {
                id: titlePointer
            }
        }
        ArtText {
            id: artistText

            width: labels.width
            height: 20
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            text: labels.artist
            shade: labels.shade
            color: Qt.rgba(1, 1, 1, 0.8)
            font.pixelSize: Theme.headlineSize

            HoverHandler {
                id: artistPointer
            }
        }
    }
    ElisionTip {
        label: titlePointer.hovered ? titleText : artistPointer.hovered ? artistText : null
        colors: Theme.onArt
    }
}
