import QtQuick

/// The whole of a text that its place cuts short, while the pointer is over it.
Loader {
    id: tip

    /// The text under the pointer, or none.
    required property Text label
    property ThemeColors colors: Theme.colors

    active: label !== null && label.truncated
    sourceComponent: AppToolTip {
        parent: tip.label
        x: 0
        text: tip.label?.text ?? ""
        colors: tip.colors
        // Only a tip that is complete knows how long it waits.
        Component.onCompleted: open()
    }
}
