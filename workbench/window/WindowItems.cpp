#include "WindowItems.h"

#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

namespace workbench {

namespace {

/// What a view makes for its rows has a parent among the items, and often none among the objects.
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
