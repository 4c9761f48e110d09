pragma Singleton

import QtQuick

/// Names that only a screen reader speaks.
QtObject {
    readonly property string folders: "文件夹"
    readonly property string tracks: "歌曲"
    readonly property string position: "播放位置"
    readonly property string clearSearch: "清除搜索"
    readonly property string menuBar: "菜单栏"
    readonly property string scrollBar: "滚动条"
    readonly property string playerBar: "播放控制"
}
