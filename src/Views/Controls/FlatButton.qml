import QtQuick
import QtQuick.Controls

/// A button without a border: filled only under the pointer. The filled area is the clickable one, and
/// may be larger than the button.
AppButton {
    id: button

    /// How far the area extends beyond the button's sides.
    property int horizontalGrow: 0
    property int verticalGrow: 0
    property real radius: Theme.radius
    property color fill: Theme.colors.hover
    property color pressedFill: Theme.colors.buttonPressed
    property color focusInk: Theme.colors.focus
    property bool isFilled: hovered || down

    padding: 0
    containmentMask: area

    background: Item {
        HoverFill {
            id: area

            x: -button.horizontalGrow
            y: -button.verticalGrow
            width: button.width + 2 * button.horizontalGrow
            height: button.height + 2 * button.verticalGrow
            radius: button.radius
            color: button.down ? button.pressedFill : button.fill
            shown: button.isFilled
        }
        FocusRing {
            anchors.fill: area
            shown: button.visualFocus
            parentRadius: button.radius
            ink: button.focusInk
        }
    }
}
