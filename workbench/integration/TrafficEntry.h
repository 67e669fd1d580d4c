#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace workbench {

/// One thing that passed between QML, plug-in and host. Not every field is used by every kind.
struct TrafficEntry
{
    enum class Kind {
        Call,       ///< QML called a method of the plug-in
        Connection, ///< the host told that the connection to the server is up
        Sent,       ///< the plug-in sent a command, accepted or not
        Answered,   ///< an answer reached the plug-in
        Event,      ///< an event reached the plug-in
        Signal,     ///< the plug-in emitted a signal
    };

    /// What comes from the plug-in; the rest goes to it.
    bool isOutput() const { return kind == Kind::Sent || kind == Kind::Signal; }

    Kind kind = Kind::Call;
    quint64 sequence = 0; ///< 1 for the first, then always one more
    qint64 elapsed = 0;   ///< milliseconds since the recording began
    QString name;         ///< of the method, command, event or signal
    QString relayPath;
    quint64 request = 0;  ///< number of a command; an answer has its command's
    int context = 0;      ///< equal for equal context pointers, 0 for null
    QString code;         ///< of an answer
    bool accepted = true; ///< of a command
    int depth = 0;        ///< how many calls, answers and events this one happened inside
    QVariant value;       ///< payload, result or event data; arguments of calls and signals
    QVariant result;      ///< of a call
    int call = 0; ///< equal for what one call, connection or event has caused, see CallTracker
    qint64 omitted = 0; ///< how many values both had, when those were too many to keep
};

/// All kinds as words, in the order of the enumeration.
const QStringList &kindNames();
/// The kind as a word: "call", "connection", "send", "answer", "event" or "signal".
QString nameOf(TrafficEntry::Kind kind);
/// The reverse; false for another word.
bool kindOf(const QString &name, TrafficEntry::Kind *kind);

} // namespace workbench
