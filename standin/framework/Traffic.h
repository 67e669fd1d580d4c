#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

namespace standin {

/// A command as the framework received it. All values are deep copies.
struct SentCommand
{
    quint64 sequence = 0; ///< of the command among all traffic
    void *hostHandle = nullptr;
    QString pluginID;
    QString command;
    QVariant payload;
    void *context = nullptr; ///< never dereferenced
    bool flag = false;
    QString relayPath;
    bool accepted = true; ///< the return value of SendCommand
};

/// A command, answer or event that passed through the framework. Not every kind uses all fields.
struct Traffic
{
    enum class Kind {
        Sent,     ///< a plug-in sent a command, accepted or not
        Answered, ///< an answer is about to be delivered to the plug-in
        Event,    ///< an event is about to be delivered to all plug-ins
    };

    Kind kind = Kind::Sent;
    quint64 sequence = 0; ///< 1 for the first, then ascending
    quint64 request = 0;  ///< of an answer: the sequence number of its command
    QString name;         ///< of the command or event
    QVariant value;       ///< payload, result or event data
    void *context = nullptr;
    QString resultCode; ///< of an answer
    QString relayPath;
    bool accepted = true; ///< of a command
    qint64 tookMs = 0;    ///< of an answer: time of the server plus delay by a rule, without queues
};

} // namespace standin
