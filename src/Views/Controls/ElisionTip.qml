import QtQuick

/// Shows the whole text while the pointer is over one that is elided.
Loader {
    id: tip

    /// The text under the pointer, or null.
    required property Text label
    property ThemeColors colors: Theme.colors

    active: label !== null && label.truncated
    sourceComponent: AppToolTip {
        parent: tip.label
        x: 0
        text: tip.label?.text ?? ""
        colors: tip.colors
        // The delay is known only once the component is complete.
        Component.onCompleted: open()
    }
}
