import QtQuick
import QtQuick.Controls

/// A slider in seconds, filled up to the handle.
Slider {
    id: slider

    readonly property bool highlighted: hovered || pressed

    implicitHeight: 18
    padding: 0
    // The step is for the arrow keys only: it would round the pointer's position too, and put the end out of reach.
    stepSize: pressed ? 0 : 5
    hoverEnabled: true
    wheelEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Slider
    // The control would set `pressed` for a key, which removes the step.
    Keys.onLeftPressed: {
        decrease();
        moved();
    }
    Keys.onRightPressed: {
        increase();
        moved();
    }

    background: Rectangle {
        y: Math.round((slider.height - height) / 2)
        width: slider.width
        height: 4
        radius: 2
        color: Theme.colors.groove

        Rectangle {
            width: slider.handle.x + slider.handle.width / 2
            height: parent.height
            radius: 2
            color: Theme.colors.accent
            visible: slider.position > 0
        }
    }
    handle: Rectangle {
        x: slider.visualPosition * (slider.width - width)
        y: Math.round((slider.height - height) / 2)
        width: 14
        height: 14
        radius: 7
        color: Theme.colors.handle
        border.width: 1
        border.color: slider.highlighted ? Theme.colors.accent : Theme.colors.handleBorder

        Rectangle {
            z: -1
            anchors.fill: parent
            anchors.margins: -4
            radius: width / 2
            color: Theme.colors.accent
            opacity: slider.highlighted ? 0.22 : 0
            Behavior on opacity {
                NumberAnimation { duration: slider.hovered ? Theme.fadeIn : Theme.fadeOut; easing.type: Theme.easeOut }
            }
        }
        FocusRing {
            shown: slider.visualFocus
            inset: -4
            parentRadius: 7
        }
    }
}
