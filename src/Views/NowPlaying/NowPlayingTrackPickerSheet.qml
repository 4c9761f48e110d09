import QtQuick
import QtQuick.Controls
import Tamsy.Controls
import Tamsy.Library

/// A sheet over the Now Playing window with the tracks of the main window; a click plays one.
Popup {
    id: sheet

    required property PlayerViewModel player
    required property LibraryViewModel library
    required property LyricsFontSize lyricsFontSize
    required property real windowHeight
    readonly property bool hasFolder: library.hasSelectedFolder
    readonly property bool isEmpty: list.count === 0
    /// Whether the sheet is fading out and accepts no further choice.
    property bool isLeaving: false

    parent: Overlay.overlay
    anchors.centerIn: parent
    width: 480
    height: Math.max(520, Math.min(640, windowHeight - 160))
    modal: true
    focus: true
    padding: 1
    closePolicy: Popup.CloseOnEscape

    function pick(address: var): void {
        if (isLeaving)
            return;
        player.play(address);
        close();
    }
    onAboutToHide: isLeaving = true

    Overlay.modal: Rectangle {
        color: Qt.rgba(0, 0, 0, 0.45)
        Behavior on opacity {
            NumberAnimation {
                duration: sheet.isLeaving ? Theme.sheetOut : Theme.sheetIn
                easing.type: sheet.isLeaving ? Theme.easeIn : Theme.easeOut
            }
        }
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.sheetIn; easing.type: Theme.easeOut }
        NumberAnimation { target: raised; property: "y"; from: 12; to: 0; duration: Theme.sheetIn; easing.type: Theme.easeOut }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.sheetOut; easing.type: Theme.easeIn }
    }
    background: Item {
        SoftShadow {
            blur: 48
            offset: 16
            radius: Theme.largeRadius
        }
        Rectangle {
            anchors.fill: parent
            radius: Theme.largeRadius
            color: Theme.onArt.table
            border.color: Theme.onArt.menuBorder
        }
        transform: Translate {
            y: raised.y
        }
    }
    contentItem: Item {
        Accessible.role: Accessible.Dialog
        Accessible.name: heading.text
        transform: Translate {
            id: raised
        }

        WindowKeys {
            player: sheet.player
            lyricsFontSize: sheet.lyricsFontSize
        }
        Text {
            id: heading

            x: 16
            height: Theme.toolbarHeight
            verticalAlignment: Text.AlignVCenter
            text: "选择歌曲"
            textFormat: Text.PlainText
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
            color: Theme.onArt.text
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        BorderedButton {
            anchors.right: parent.right
            anchors.rightMargin: 12
            y: 12
            text: "关闭"
            colors: Theme.onArt
            onClicked: sheet.close()
        }
        Rectangle {
            y: Theme.toolbarHeight - 1
            width: parent.width
            height: 1
            color: Theme.onArt.separator
        }
        EmptyState {
            id: emptyState

            anchors.horizontalCenter: parent.horizontalCenter
            y: Math.round((Theme.toolbarHeight + parent.height - height) / 2)
            visible: !sheet.hasFolder || sheet.isEmpty
            spacing: 12
            colors: Theme.onArt
            iconName: "note-list"
            title: sheet.hasFolder ? "暂无曲目" : "未选择文件夹"
            message: !sheet.hasFolder ? "请先在主窗口侧边栏选择资料库文件夹"
                   : sheet.library.searchText !== "" ? "没有符合搜索条件的歌曲" : "当前文件夹中没有可播放文件"
        }
        ListView {
            id: list

            anchors.fill: parent
            anchors.topMargin: Theme.toolbarHeight
            anchors.bottomMargin: 1
            topMargin: 8
            bottomMargin: 8
            visible: !emptyState.visible
            clip: true
            focus: true
            reuseItems: true
            boundsBehavior: Flickable.StopAtBounds
            highlightFollowsCurrentItem: true
            highlightMoveDuration: 0
            currentIndex: -1
            activeFocusOnTab: true
            Accessible.role: Accessible.List
            Accessible.name: AccessibleNames.tracks
            ScrollBar.vertical: ThinScrollBar {
                colors: Theme.onArt
            }
            // The linter doesn't know the base class of a C++ model.
            // qmllint disable
            model: TrackListModel {
                id: tracks
                library: sheet.library
            }
            // qmllint enable
            Keys.onReturnPressed: playCurrent()
            Keys.onEnterPressed: playCurrent()

            function playCurrent(): void {
                const url = tracks.urlOf(tracks.idAt(currentIndex));
                if (url !== undefined)
                    sheet.pick(url);
            }

            // The linter doesn't know ids outside a component.
            // qmllint disable unqualified
            delegate: PickerRow {
                width: list.width
                player: sheet.player
                showsKeyboardFocus: ListView.isCurrentItem && list.activeFocus
                onPicked: sheet.pick(tracks.urlOf(trackId))
            }
            // qmllint enable unqualified
        }
    }
}
