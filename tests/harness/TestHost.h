#pragma once

#include "Host.h"

/// A base class, because the logging library must be loaded before the plug-in.
struct TestLog
{
    driver::LogProbe log;
};

/// A host with the library of this build. Ends the program if the library or the logging library
/// can't be loaded.
class TestHost : private TestLog, public driver::Host
{
public:
    explicit TestHost(Start start = Initialised)
        : Host(QStringLiteral(TESSALINE_PLUGIN_PATH), start, &log)
    {
        if (!log.error().isEmpty() || !error().isEmpty())
            qFatal("%s%s", qPrintable(log.error()), qPrintable(error()));
    }
};

using driver::serverRecord;

/// @return the answer to a query: records with these identifiers, camera "1" and location "l"
inline QVariant queryAnswer(const QStringList &ids)
{
    QVariantList records;
    for (const QString &id : ids)
        records.append(serverRecord(id, QStringLiteral("1"), QStringLiteral("l"), 1, 2));
    return QVariantMap{{QStringLiteral("Bookmarks"), records}};
}
