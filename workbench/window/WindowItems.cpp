#include "WindowItems.h"

#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

namespace workbench {

namespace {

/// Searches child items, because the delegates of a view often have no QObject parent.
QObject *findItem(QQuickItem *item, const QString &objectName)
{
    if (item->objectName() == objectName)
        return item;
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children) {
        if (QObject *const found = findItem(child, objectName))
            return found;
    }
    return nullptr;
}

} // namespace

QObject *findInWindow(QQuickWindow &window, const QString &objectName)
{
    QObject *const object = window.findChild<QObject *>(objectName);
    return object ? object : findItem(window.contentItem(), objectName);
}

} // namespace workbench
