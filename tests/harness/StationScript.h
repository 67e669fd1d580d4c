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
    QString play(PluginHarness &harness, const QString &script)
    {
        harness.framework.setServer(this);
        harness.framework.rules().setDefault(standin::Delivery::never());
        harness.startTrace();
        QStringList trace;
        const QStringList steps = script.split(QLatin1String(", "));
        for (const QString &step : steps) {
            const QString returned = playStep(harness, step.split(u' '));
            trace += harness.takeTrace() + QStringList(returned);
        }
        harness.framework.setServer(nullptr);
        return trace.join(u' ').simplified();
    }

    standin::Answer execute(const QString &, const QVariant &, const QString &relayPath) override
    {
        return {result(relayPath, {}), resultCode(m_failing.contains(relayPath))};
    }

private:
    /// What the call returned, if there was one.
    QString playStep(PluginHarness &harness, QStringList words)
    {
        const QString subject = words.takeFirst();
        const bool fails = words.contains(QLatin1String("fails"));
        auto &rules = harness.framework.rules();
        if (subject == u"send") {
            const bool returned = send(harness);
            m_starts.append(harness.sent().value(0));
            harness.framework.clearSent();
            return QVariant(returned).toString();
        }
        if (words.contains(QLatin1String("refuses"))) {
            rules.setForStation(subject, standin::Delivery::refused());
        } else if (words.contains(QLatin1String("inside"))) {
            rules.setForStation(subject, standin::Delivery::immediate());
            if (fails)
                m_failing.append(subject);
        } else {
            const standin::SentCommand start = m_starts.at(subject.at(0).digitValue() - 1);
            const QString station = subject.mid(1);
            harness.answer(start.command, result(station, words), station, start.context,
                           resultCode(fails));
        }
        return {};
    }

    static QString resultCode(bool fails) { return QLatin1String(fails ? "-1" : "0"); }

    QStringList m_failing;                ///< stations that fail inside
    QList<standin::SentCommand> m_starts; ///< the first command of each request
};
