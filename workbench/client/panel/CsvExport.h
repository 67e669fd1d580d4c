#pragma once

#include "RecordFinder.h"

#include <QtCore/QFileInfo>
#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// Saves bookmarks as a CSV file that --import reads.
class CsvExport : public QObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;

    /// @return a path in the user's home folder for a new file
    Q_INVOKABLE static QString newFile();

    Q_INVOKABLE static bool exists(const QString &path) { return QFileInfo::exists(path); }

    /// Saves all bookmarks that match a filter, see RecordFinder.
    /// @return an error message with the file, or an empty text
    Q_INVOKABLE static QString save(const QString &path, workbench::RecordFinder *finder,
                                    const QVariantMap &filter);
};

} // namespace workbench
