import QtQuick
import QtQuick.Controls

/// A list of rows of one height. Something may cover its bottom.
ListView {
    id: list

    required property int rowHeight
    /// The height of what covers the bottom.
    property int bottomInset: 0
    /// Whether the focus was last moved by keyboard.
    property bool usedByKeyboard: false
    readonly property bool showsKeyboardFocus: activeFocus && usedByKeyboard

    clip: true
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: ThinScrollBar {
        bottomPadding: list.bottomInset + 2
    }

    // A press resets it after it has taken the focus.
    onActiveFocusChanged: usedByKeyboard = activeFocus

    /// Takes the focus for a press.
    function focusByPointer(): void {
        forceActiveFocus();
        usedByKeyboard = false;
    }
    /// Scrolls just enough to show the row above what covers the list.
    function reveal(row: int): void {
        const top = row * rowHeight;
        const lowest = top + rowHeight - (height - bottomInset);
        contentY = Math.max(lowest, Math.min(top - topMargin, contentY));
    }
}
