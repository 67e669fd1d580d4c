#pragma once

#include "PluginHarness.h"
#include "Server.h"

#include <functional>

/// Plays a request that goes to several stations together with what they answer, as one line:
///
///   "B inside, C fails inside, A refuses"  what these do from then on; else answers are scripted
///   "send"                                 makes the request
///   "1A", "2B x y", "1C fails"             A's answer to the first request, B's to the second...
class StationScript : public standin::Server
{
public:
    /// Makes the request.
    std::function<bool(PluginHarness &)> send;
    /// What a station answers; the texts follow it in the script.
    std::function<QVariant(const QString &relayPath, const QStringList &texts)> result;

    /// The trace, and after "send" what it returned: "AddBookmarks@A true ...".
    QString play(PluginHarness &harness, const QString &script);

    standin::Answer execute(const QString &command, const QVariant &payload,
                            const QString &relayPath) override;

private:
    QString playStep(PluginHarness &harness, QStringList words);

    QStringList m_failing;                ///< stations that fail inside
    QList<standin::SentCommand> m_starts; ///< the first command of each request
};
