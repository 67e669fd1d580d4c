#pragma once

#include "ZonedObject.h"

#include <QtCore/QPointer>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// Finds bookmarks through the plug-in, also by time of day, which the plug-in has no filter for.
///
/// A filter is one of getFilteredBookmarkList(). Its additional key `timeOfDay` is empty or a text
/// like "22:00-06:00", times of the server's zone: the start counts, the end does not belong to
/// it.
class RecordFinder : public workbench::ZonedObject
{
    Q_OBJECT
    QML_ELEMENT
    /// The plug-in's object.
    Q_PROPERTY(QObject *plugin MEMBER m_plugin)

public:
    using ZonedObject::ZonedObject;

    /// Whether a text is a time of day; an empty one is.
    Q_INVOKABLE static bool isTimeOfDay(const QString &text);

    /// A page as getFilteredBookmarkList() returns it.
    Q_INVOKABLE QVariantMap page(const QVariantMap &filter) const;

    /// The display records of all pages, in the order of the list of all bookmarks.
    QVariantList records(const QVariantMap &filter) const;

private:
    QPointer<QObject> m_plugin;
};

} // namespace workbench
