#pragma once

#include "FrameworkWrapperBase.h"
#include "Traffic.h"

#include <QtCore/QVariant>

namespace standin {

/// Accepts every command and stores the passed values themselves. The deep copies of Framework
/// would hide values that refer to the plug-in's own memory.
class RetainingFramework final : public FrameworkWrapperBase
{
public:
    bool SendCommand(void *, const QString &pluginID, const QString &command,
                     const QVariant &payload, void *context, bool,
                     const QString &relayPath) override
    {
        kept += {pluginID, command, payload, relayPath};
        sent.append({0, nullptr, pluginID, command, payload, context, false, relayPath, true});
        return true;
    }
    QObject *FindPlugin(void *, const QString &) override { return topology; }

    QObject *topology = nullptr; ///< not owned
    QVariantList kept;           ///< plug-in ID, command, payload and relay path of each command
    QList<SentCommand> sent;
};

} // namespace standin
