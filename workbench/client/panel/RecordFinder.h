#pragma once

#include "ZonedObject.h"

#include <QtCore/QPointer>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// Finds bookmarks through the plug-in, and by time of day, which the plug-in can't filter.
///
/// A filter is a map for getFilteredBookmarkList() with the additional key `timeOfDay`: empty, or a
/// text like "22:00-06:00" in the server's zone, without the end. It filters by the bookmark's
/// start.
class RecordFinder : public workbench::ZonedObject
{
    Q_OBJECT
    QML_ELEMENT
    /// The plug-in's object.
    Q_PROPERTY(QObject *plugin MEMBER m_plugin)

public:
    using ZonedObject::ZonedObject;

    /// @return true if a text is a valid or empty time of day
    Q_INVOKABLE static bool isTimeOfDay(const QString &text);

    /// @return a page in the form of getFilteredBookmarkList()
    Q_INVOKABLE QVariantMap page(const QVariantMap &filter) const;

    /// @return the display records of all pages, in the order of the list of all bookmarks
    QVariantList records(const QVariantMap &filter) const;

private:
    QPointer<QObject> m_plugin;
};

} // namespace workbench
