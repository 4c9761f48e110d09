#pragma once

#include <QAccessible>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>

namespace tamsy {

/// All controls below `item` that have no accessible role or name.
inline QString namelessBelow(QAccessibleInterface* item) {
    QString nameless;
    const bool isContainer = item->role() == QAccessible::Client ||
                             item->role() == QAccessible::Window ||
                             item->role() == QAccessible::Application;
    if (!isContainer && item->object() != nullptr && item->object()->property("visible").toBool() &&
        (item->role() == QAccessible::NoRole || item->text(QAccessible::Name).isEmpty()))
        nameless = QLatin1String(item->object()->metaObject()->className()) + QLatin1Char(' ');
    for (int i = 0; i < item->childCount(); ++i)
        nameless += namelessBelow(item->child(i));
    return nameless;
}

/// The first visible item below `item` with the accessible name `name`; null if there is none.
inline QQuickItem* itemNamed(QAccessibleInterface* item, const QString& name) {
    auto* found = qobject_cast<QQuickItem*>(item->object());
    if (found != nullptr && found->isVisible() && item->text(QAccessible::Name) == name)
        return found;
    for (int i = 0; i < item->childCount(); ++i) {
        if (QQuickItem* below = itemNamed(item->child(i), name))
            return below;
    }
    return nullptr;
}

inline QAccessibleInterface* accessible(QQuickWindow* window) {
    QAccessible::setActive(true);
    return QAccessible::queryAccessibleInterface(window);
}

} // namespace tamsy
