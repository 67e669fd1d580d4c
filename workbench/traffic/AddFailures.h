#pragma once

#include "framework/Traffic.h"

#include <QtCore/QMap>
#include <QtCore/QVariant>

namespace workbench {

/// Cameras on which bookmarks could not be added. The plug-in's signals name a camera by a text
/// that several cameras may share, and they give no reason.
class AddFailures
{
public:
    /// Must see everything that passes through the framework, before the plug-in does.
    void noteTraffic(const standin::Traffic &traffic);

    /// Failures of the commands that were sent after @p request: by camera key the result code, or
    /// an empty text if the host rejected the command or the station left the camera out.
    QVariantMap after(quint64 request) const;

private:
    struct Command
    {
        QString relayPath;
        QVariantList records;
    };

    void noteFailures(quint64 request, const Command &command, const QString &code);

    QMap<quint64, Command> m_pending;
    QMap<quint64, QVariantMap> m_failures;
};

} // namespace workbench
