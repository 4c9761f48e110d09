import QtQuick
import QtQuick.Controls

/// A search field with a clear button.
TextField {
    id: field

    implicitWidth: 260
    implicitHeight: Theme.controlHeight
    leftPadding: 32
    rightPadding: clearButton.visible ? 32 : 8
    topPadding: 0
    bottomPadding: 0
    verticalAlignment: TextInput.AlignVCenter
    font.pixelSize: Theme.bodySize
    color: Theme.colors.text
    placeholderTextColor: Theme.colors.placeholder
    selectionColor: Theme.colors.selectedActive
    selectedTextColor: Theme.colors.text
    selectByMouse: true
    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText

    Keys.onEscapePressed: field.clear()

    background: Rectangle {
        radius: Theme.radius
        color: Theme.colors.field
        border.width: 1
        border.color: Theme.colors.fieldBorder

        FocusRing {
            shown: field.activeFocus
            inset: -1
        }
        Icon {
            x: 9
            anchors.verticalCenter: parent.verticalCenter
            name: "search"
            size: 16
            color: Theme.colors.text2
        }
    }
    IconButton {
        id: clearButton

        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: 24
        implicitHeight: 24
        visible: field.text !== ""
        focusPolicy: Qt.NoFocus
        iconName: "close"
        iconSize: 16
        Accessible.name: AccessibleNames.clearSearch
        onClicked: {
            field.clear();
            field.forceActiveFocus();
        }
    }
}
