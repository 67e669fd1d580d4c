#pragma once

#include "Host.h"

/// The logging library, there before the plug-in is loaded.
struct TestLog
{
    driver::LogProbe log;
};

/// The built library in a host. Ends the program if it, or the logging library, can't be loaded.
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

/// The answer to a query: records with these identifiers, all of camera "1" at location "l".
inline QVariant queryAnswer(const QStringList &ids)
{
    QVariantList records;
    for (const QString &id : ids)
        records.append(serverRecord(id, QStringLiteral("1"), QStringLiteral("l"), 1, 2));
    return QVariantMap{{QStringLiteral("Bookmarks"), records}};
}
