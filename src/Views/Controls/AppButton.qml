import QtQuick
import QtQuick.Controls

/// What our buttons have in common, whatever they look like. Space belongs to the player, so that
/// it pauses wherever the focus is; Return presses the button that has it.
AbstractButton {
    id: button

    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
