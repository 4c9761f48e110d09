import QtQuick
import Tamsy.Controls

/// A thin bar on the cover's colours, filled up to a fraction. It reports drags and leaves the rest to
/// its owner; a click is a drag of one step.
Item {
    id: bar

    /// The filled fraction, 0 to 1.
    required property real fraction
    /// Whether the thumb shows at the end of the filled part.
    required property bool showsThumb
    readonly property alias hovered: pointer.hovered

    /// The pointer is at this fraction of the width, clamped to 0 to 1.
    signal dragged(fraction: real)
    signal dropped(fraction: real)
    /// The drag was cancelled, for example by a gesture of the desktop.
    signal canceled
    /// An arrow key or a notch of the wheel: -1 or 1.
    signal stepped(direction: int)

    activeFocusOnTab: true
    readonly property real value: fraction
    readonly property real minimumValue: 0
    readonly property real maximumValue: 1
    readonly property real stepSize: 0.05

    Accessible.role: Accessible.Slider
    Accessible.focusable: true
    Accessible.onIncreaseAction: stepped(1)
    Accessible.onDecreaseAction: stepped(-1)
    Keys.onLeftPressed: stepped(-1)
    Keys.onRightPressed: stepped(1)

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: 4
        radius: 2
        color: Qt.rgba(1, 1, 1, 0.15)
    }
    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width * bar.fraction
        height: 4
        radius: 2
        color: Qt.rgba(1, 1, 1, 0.4)
    }
    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        x: bar.width * bar.fraction - 6
        width: 12
        height: 12
        radius: 6
        color: Qt.rgba(1, 1, 1, 0.45)
        opacity: bar.showsThumb ? 1 : 0
        Behavior on opacity {
            NumberAnimation { duration: bar.showsThumb ? Theme.thumbIn : Theme.thumbOut; easing.type: Theme.easeOut }
        }
    }
    FocusRing {
        shown: bar.activeFocus
        inset: -4
        ink: Qt.rgba(1, 1, 1, 0.9)
    }

    PointerArea {
        id: pointer

        function fractionAt(x: real): real {
            const width = Math.max(bar.width, 1);
            return Math.max(0, Math.min(x, width)) / width;
        }

        /// Rotation so far, in eighths of a degree: touchpads report fractions of a notch.
        property int turned: 0

        anchors.fill: parent
        preventStealing: true
        onPressed: mouse => bar.dragged(fractionAt(mouse.x))
        onPositionChanged: mouse => {
            if (pressed)
                bar.dragged(fractionAt(mouse.x));
        }
        onReleased: mouse => bar.dropped(fractionAt(mouse.x))
        onCanceled: bar.canceled()
        onWheel: wheel => {
            turned += wheel.angleDelta.y !== 0 ? wheel.angleDelta.y : -wheel.angleDelta.x;
            for (; Math.abs(turned) >= 120; turned -= 120 * Math.sign(turned))
                bar.stepped(Math.sign(turned));
        }
    }
}
