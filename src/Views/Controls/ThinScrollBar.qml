import QtQuick
import QtQuick.Controls

/// An overlay scroll bar without a track: thin at rest, wider under the pointer, hidden a while after
/// the last movement.
ScrollBar {
    id: bar

    property ThemeColors colors: Theme.colors
    readonly property bool wide: hovered || pressed

    implicitWidth: 12
    padding: 2
    minimumSize: 0.05
    policy: ScrollBar.AsNeeded
    Accessible.role: Accessible.ScrollBar
    Accessible.name: AccessibleNames.scrollBar

    contentItem: Item {
        implicitWidth: 8
        opacity: 0

        Rectangle {
            anchors.right: parent.right
            width: bar.wide ? 8 : 4
            height: parent.height
            radius: 2
            color: bar.colors.scroll
            opacity: bar.wide ? 0.45 : 0.28
            Behavior on width {
                NumberAnimation { duration: bar.wide ? Theme.fadeIn : Theme.fadeOut; easing.type: Theme.easeOut }
            }
            Behavior on opacity {
                NumberAnimation { duration: bar.wide ? Theme.fadeIn : Theme.fadeOut; easing.type: Theme.easeOut }
            }
        }
        states: State {
            when: bar.active && bar.size < 1
            PropertyChanges { bar.contentItem.opacity: 1 }
        }
        transitions: [
            Transition {
                to: ""
                SequentialAnimation {
                    PauseAnimation { duration: Theme.scrollBarRest }
                    NumberAnimation { property: "opacity"; duration: Theme.scrollBarOut; easing.type: Easing.Linear }
                }
            },
            Transition {
                from: ""
                NumberAnimation { property: "opacity"; duration: Theme.fadeIn; easing.type: Theme.easeOut }
            }
        ]
    }
    background: null
}
