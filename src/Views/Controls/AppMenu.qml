import QtQuick
import QtQuick.Controls

/// A menu as wide as its widest item.
Menu {
    id: menu

    property int minWidth: 120

    padding: 4
    delegate: AppMenuItem {}

    contentItem: ListView {
        implicitWidth: {
            let widest = menu.minWidth;
            for (let i = 0; i < menu.count; ++i)
                widest = Math.max(widest, menu.itemAt(i)?.implicitWidth ?? 0);
            return widest;
        }
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: false
        currentIndex: menu.currentIndex
    }
    background: Rectangle {
        radius: Theme.radius
        color: Theme.colors.menu
        border.color: Theme.colors.menuBorder

        SurfaceShadow {
            z: -1
            anchors.fill: parent
        }
    }
    enter: FadeIn {}
    exit: FadeOut {}
}
