import QtQuick
import Tamsy.Controls

/// A row of the track picker. All of it is clickable.
Item {
    id: pickerRow

    required property int index
    required property string trackId
    required property string address
    required property string title
    required property string artist
    required property string duration
    required property PlayerViewModel player
    property bool showsKeyboardFocus: false
    readonly property bool current: address === player.currentAddress

    signal picked

    height: Theme.pickerRowHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: title + " " + artist + " " + duration
    Accessible.onPressAction: picked()

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        radius: Theme.smallRadius
        color: pickerRow.index % 2 === 1 ? Theme.onArt.alternate : "transparent"

        HoverFill {
            anchors.fill: parent
            radius: Theme.smallRadius
            color: Theme.onArt.hover
            shown: pointer.hovered
        }
        Icon {
            x: 8
            anchors.verticalCenter: parent.verticalCenter
            width: 22
            name: "speaker-high"
            size: 20
            color: Theme.onArt.text2
            opacity: pickerRow.current ? 1 : 0
        }
        Column {
            id: texts

            x: 8 + 22 + 12
            anchors.verticalCenter: parent.verticalCenter
            width: length.x - 12 - 8 - 12 - x
            spacing: 2

            Text {
                id: titleText

                width: parent.width
                height: 20
                verticalAlignment: Text.AlignVCenter
                text: pickerRow.title
                textFormat: Text.PlainText
                elide: Text.ElideRight
                maximumLineCount: 1
                font.pixelSize: Theme.bodySize
                color: Theme.onArt.text
                Accessible.ignored: true
            }
            Text {
                id: artistText

                width: parent.width
                height: 16
                verticalAlignment: Text.AlignVCenter
                text: pickerRow.artist
                textFormat: Text.PlainText
                elide: Text.ElideRight
                maximumLineCount: 1
                font.pixelSize: Theme.smallSize
                color: Theme.onArt.text2
                Accessible.ignored: true
            }
        }
        Text {
            id: length

            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            text: pickerRow.duration
            textFormat: Text.PlainText
            font.pixelSize: Theme.smallSize
            color: Theme.onArt.text2
            Accessible.ignored: true
        }
        FocusRing {
            shown: pickerRow.showsKeyboardFocus
            parentRadius: Theme.smallRadius
            ink: Theme.onArt.focus
        }
    }
    RowPointer {
        id: pointer

        readonly property Text label: [titleText, artistText].find(cell => hovered && cell.contains(mapToItem(cell, mouseX, mouseY))) ?? null

        anchors.fill: parent
        onClicked: pickerRow.picked()
    }
    ElisionTip {
        label: pointer.label
        colors: Theme.onArt
    }
}
