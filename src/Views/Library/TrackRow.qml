import QtQuick
import Tamsy.Controls

/// A row of the track table. It reports presses; the table decides what they mean.
Item {
    id: row

    required property int index
    required property string trackId
    required property string address
    required property string title
    required property string artist
    required property string album
    required property string duration
    required property TrackColumns columns
    required property PlayerViewModel player
    property bool selected: false
    property bool hasListFocus: false
    property bool showsKeyboardFocus: false
    /// False while the row is pooled for reuse.
    property bool isShown: true
    readonly property bool current: address === player.currentAddress
    readonly property bool vivid: selected && hasListFocus

    /// The row was chosen; `onTitle` says whether in the first column.
    signal chosen(onTitle: bool)
    /// The pointer was released on the row, after `chosen`.
    signal clicked(onTitle: bool)

    height: Theme.trackRowHeight
    ListView.onPooled: isShown = false
    ListView.onReused: isShown = true
    Accessible.role: Accessible.Row
    Accessible.name: title + " " + artist + " " + album + " " + duration
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: {
        chosen(true);
        clicked(true);
    }

    // The linter doesn't know ids outside a component.
    // qmllint disable unqualified
    component Cell: Text {
        height: row.height
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
        font.pixelSize: Theme.bodySize
        color: row.vivid ? Theme.colors.text : Theme.colors.text2
        elide: Text.ElideRight
        maximumLineCount: 1
        Accessible.ignored: true
    }
    // qmllint enable unqualified

    Rectangle {
        id: fill

        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        radius: Theme.smallRadius
        color: row.vivid ? Theme.colors.selectedActive : row.selected ? Theme.colors.selectedInactive
             : row.index % 2 === 1 ? Theme.colors.alternate : "transparent"

        HoverFill {
            anchors.fill: parent
            visible: !row.selected
            radius: Theme.smallRadius
            color: Theme.colors.hover
            shown: pointer.hovered
        }
        FocusRing {
            shown: row.selected && row.showsKeyboardFocus
            parentRadius: Theme.smallRadius
        }
    }
    Item {
        id: content

        x: 16
        width: row.columns.contentWidth
        height: parent.height

        ArtworkView {
            anchors.verticalCenter: parent.verticalCenter
            address: row.address
            isShown: row.isShown
            current: row.current
            playing: row.current && row.player.isPlaying
        }
        Cell {
            id: titleCell

            x: 36
            width: row.columns.titleWidth - x
            text: row.title
            font.weight: row.current ? Font.DemiBold : Font.Normal
            color: row.current ? Theme.colors.accent : Theme.colors.text
        }
        Cell {
            id: artistCell

            x: row.columns.artistX
            width: row.columns.artistWidth
            text: row.artist
        }
        Cell {
            id: albumCell

            x: row.columns.albumX
            width: row.columns.albumWidth
            text: row.album
        }
        Cell {
            x: row.columns.durationX
            width: row.columns.durationWidth
            horizontalAlignment: Text.AlignRight
            text: row.duration
        }
    }
    RowPointer {
        id: pointer

        function isOnTitle(x: real): bool {
            return x < content.x - fill.anchors.leftMargin + row.columns.titleWidth;
        }

        readonly property Text label: [titleCell, artistCell, albumCell].find(cell => hovered && cell.contains(mapToItem(cell, mouseX, mouseY))) ?? null

        anchors.fill: fill
        onChosen: x => row.chosen(isOnTitle(x))
        onClicked: mouse => row.clicked(isOnTitle(mouse.x))
    }
    ElisionTip {
        label: pointer.label
    }
}
