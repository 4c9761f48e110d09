import QtQuick
import QtQuick.Controls

/// The base of all buttons. Space belongs to the player, so that it pauses wherever the focus is;
/// Return presses the focused button.
AbstractButton {
    id: button

    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
