import QtQuick.Controls

/// An action whose menu item shows its shortcut.
Action {
    property string shortcutText: ""
}
