#pragma once

#include <QAccessible>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QStringList>

namespace tamsy {

/// Every control that a screen reader meets below `item` without a role or a name.
inline void collectNameless(QAccessibleInterface* item, QStringList& nameless) {
    const bool isContainer = item->role() == QAccessible::Client ||
                             item->role() == QAccessible::Window ||
                             item->role() == QAccessible::Application;
    if (!isContainer && item->object() != nullptr && item->object()->property("visible").toBool() &&
        (item->role() == QAccessible::NoRole || item->text(QAccessible::Name).isEmpty()))
        nameless.append(QString::fromLatin1(item->object()->metaObject()->className()));
    for (int i = 0; i < item->childCount(); ++i)
        collectNameless(item->child(i), nameless);
}

/// The first visible item below `item` that is called `name`; null if there is none.
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

/// The same in a whole window.
inline QQuickItem* itemNamed(QQuickWindow* window, const QString& name) {
    QAccessible::setActive(true);
    return itemNamed(QAccessible::queryAccessibleInterface(window), name);
}

} // namespace tamsy
