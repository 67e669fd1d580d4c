#pragma once

#include "framework/Traffic.h"

#include <QtCore/QMap>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace workbench {

/// What became of bookmarks that were to be added. The plug-in's signals name a camera that failed
/// by a text that several cameras may share, and give neither a reason nor the new identifiers.
class AddOutcomes
{
public:
    /// Must see everything that passes through the framework, before the plug-in does.
    void noteTraffic(const standin::Traffic &traffic);

    /// Failures of the commands that were sent after @p request: by camera key the result code, or
    /// an empty text if the host rejected the command or the station left the camera out.
    QVariantMap failuresAfter(quint64 request) const;
    /// Bookmarks that these commands have added, as "relay path/identifier".
    QStringList addedAfter(quint64 request) const;

private:
    struct Command
    {
        QString relayPath;
        QVariantList records;
    };

    void noteAnswer(const Command &command, const standin::Traffic &answer);
    void noteFailures(quint64 request, const Command &command, const QString &code);

    QMap<quint64, Command> m_pending;
    QMap<quint64, QVariantMap> m_failures;
    QMap<quint64, QStringList> m_added;
};

} // namespace workbench
