import QtQuick
import Tamsy.Controls

/// The column titles of the track table.
Item {
    id: header

    required property TrackColumns columns

    implicitHeight: Theme.tableHeaderHeight

    // The linter doesn't know ids outside a component.
    // qmllint disable unqualified
    component Title: Text {
        height: header.height
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
        font.pixelSize: Theme.smallSize
        color: Theme.colors.text2
        elide: Text.ElideRight
        Accessible.role: Accessible.ColumnHeader
        Accessible.name: text
    }
    // qmllint enable unqualified

    Item {
        x: 16
        width: header.columns.contentWidth
        height: parent.height

        Title {
            width: header.columns.titleWidth
            text: "歌曲"
        }
        Title {
            x: header.columns.artistX
            width: header.columns.artistWidth
            text: "艺人"
        }
        Title {
            x: header.columns.albumX
            width: header.columns.albumWidth
            text: "专辑"
        }
        Title {
            x: header.columns.durationX
            width: header.columns.durationWidth
            horizontalAlignment: Text.AlignRight
            text: "时长"
        }
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.colors.separator
    }
}
