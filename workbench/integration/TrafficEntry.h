#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace workbench {

/// A call, command, answer, event or signal. Each kind uses only some of the fields.
struct TrafficEntry
{
    enum class Kind {
        Call,       ///< QML called a method of the plug-in
        Connection, ///< the host notified the plug-in of the connection to the server
        Sent,       ///< the plug-in sent a command, accepted or not
        Answered,   ///< an answer reached the plug-in
        Event,      ///< an event reached the plug-in
        Signal,     ///< the plug-in emitted a signal
    };

    /// @return true if the entry comes from the plug-in, false if it goes to it
    bool isOutput() const { return kind == Kind::Sent || kind == Kind::Signal; }

    Kind kind = Kind::Call;
    quint64 sequence = 0; ///< 1 for the first entry, then consecutive
    qint64 elapsed = 0;   ///< milliseconds since the recording began
    QString name;         ///< of the method, command, event or signal
    QString relayPath;
    quint64 request = 0;  ///< number of a command; an answer has its command's
    int context = 0;      ///< equal for equal context pointers, 0 for null
    QString code;         ///< of an answer
    bool accepted = true; ///< of a command
    int depth = 0;        ///< number of enclosing calls, answers and events
    QVariant value;       ///< payload, result or event data; arguments of calls and signals
    QVariant result;      ///< of a call
    int call = 0;         ///< number of the call that caused the entry, see CallTracker
    qint64 omitted = 0; ///< number of values of a payload that was too large to store; otherwise 0
};

/// Returns the names of the kinds, in the order of the enumeration: "call", "connection", "send",
/// "answer", "event", "signal".
const QStringList &kindNames();
/// Returns the name of a kind.
QString nameOf(TrafficEntry::Kind kind);
/// Sets @p kind to the kind with this name.
/// @return false if there is none
bool kindOf(const QString &name, TrafficEntry::Kind *kind);

} // namespace workbench
