#include "StationScript.h"

using namespace Qt::StringLiterals;
using standin::Delivery;

QString StationScript::play(PluginHarness &harness, const QString &script)
{
    harness.framework.setServer(this);
    harness.framework.rules().setDefault(Delivery::never());
    harness.startTrace();
    QStringList trace;
    const QStringList steps = script.split(u", "_s);
    for (const QString &step : steps) {
        const QString returned = playStep(harness, step.split(u' '));
        trace += harness.takeTrace();
        if (!returned.isEmpty())
            trace += returned;
    }
    harness.framework.setServer(nullptr);
    return trace.join(u' ');
}

QString StationScript::playStep(PluginHarness &harness, QStringList words)
{
    const QString subject = words.takeFirst();
    const bool fails = words.value(0) == u"fails";
    if (subject == u"send") {
        const bool returned = send(harness);
        m_starts.append(harness.sent().value(0));
        harness.framework.clearSent();
        return returned ? u"true"_s : u"false"_s;
    }
    if (words.value(0) == u"refuses") {
        harness.framework.rules().setForStation(subject, Delivery::refused());
    } else if (words.value(words.size() - 1) == u"inside") {
        harness.framework.rules().setForStation(subject, Delivery::immediate());
        if (fails)
            m_failing.append(subject);
    } else {
        const standin::SentCommand start = m_starts.at(subject.at(0).digitValue() - 1);
        const QString station = subject.mid(1);
        harness.answer(start.command, result(station, words), station, start.context,
                       fails ? u"-1"_s : u"0"_s);
    }
    return {};
}

standin::Answer StationScript::execute(const QString &, const QVariant &, const QString &relayPath)
{
    const bool fails = m_failing.contains(relayPath);
    return {result(relayPath, {}), fails ? u"-1"_s : u"0"_s};
}
