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
    readonly property string playPause: "播放 / 暂停"
    readonly property string previous: "上一首"
    readonly property string next: "下一首"
    readonly property string shuffle: "随机播放"
    readonly property string repeatOne: "单曲循环"
    readonly property string volume: "音量"
    readonly property string lyrics: "歌词"
}
