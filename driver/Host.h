#pragma once

#include "LoadedPlugin.h"
#include "LogProbe.h"
#include "PluginBase.h"
#include "Server.h"
#include "ServerRecord.h"
#include "SignalLines.h"
#include "framework/Framework.h"
#include "topology/Topology.h"

#include <QtCore/QPointer>
#include <QtCore/QStringList>

#include <memory>
#include <utility>

class QAbstractItemModel;

namespace driver {

/// A build of the plug-in in a host of its own, driven step by step; all that leaves the plug-in
/// is kept as lines of text, in its order. docs/testing.md describes steps and lines.
///
/// Three stations are in the topology, "A", "B" and "C", with the cameras "A/1", "B/1" and "C/1";
/// they are called "Station A" and "Camera A1" and so on. The node "x" is no station. All commands
/// are accepted, and answered by the steps alone.
class Host
{
public:
    enum Start { Initialised, Bare };

    /// Loads the library and, unless Bare, introduces it to the host.
    /// @param log adds the plug-in's log lines to the trace; null for none. Not owned.
    explicit Host(const QString &library, Start start = Initialised, LogProbe *log = nullptr);
    /// Deletes the object and unloads the library.
    ~Host();
    Q_DISABLE_COPY_MOVE(Host)

    /// Why there is no plug-in, or an empty text.
    QString error() const { return m_error; }

    PluginBase &plugin() const { return *m_plugin; }
    QObject *object() const { return m_object; }
    bool isAlive() const { return m_object; }
    void deleteObject() { delete m_object.data(); }
    /// Replaces the object by a new one, introduced alike, and calls forgetTraffic().
    void renewObject();
    /// Sets how commands are accepted and answered where no step says otherwise. Survives
    /// renewObject().
    void setDefaultDelivery(const standin::Delivery &delivery);
    /// Puts the stations and cameras back that the host begins with.
    void resetTopology();
    /// Forgets all that was sent and traced, and the rules.
    void forgetTraffic();
    /// Introduces the object to the host again, with another framework.
    void introduce(FrameworkWrapperBase *framework);

    standin::Framework framework;
    standin::Topology topology;

    /// The lines since the last call.
    QStringList takeTrace() { return std::exchange(m_trace, {}); }
    /// Adds a line to the trace.
    void note(const QString &line);
    /// Called with each line, from inside the event that the line reports.
    std::function<void(const QString &line)> onLine;

    /// Carries out steps, one a line, as long as the object lives; blank lines are skipped. A step
    /// that is not in the grammar ends the process with a message that names @p file and @p line.
    /// @return the trace, one line each
    QString play(const QString &steps, const char *file = __builtin_FILE(),
                 int line = __builtin_LINE());

    /// Calls a method by a text as in QML, "updateBookmark('b', null)".
    /// @return the result, invalid for a void method. A call that fits no method is noted in the
    ///     trace.
    QVariant call(const QString &text);
    QVariant call(const QByteArray &method, const QVariantList &arguments);
    bool hasMethod(const QByteArray &name) const;

    /// Delivers an answer as the host does.
    void answer(const QString &command, const QVariant &result, const QString &relayPath,
                void *context = nullptr, const QString &code = QStringLiteral("0"));
    void answer(const standin::SentCommand &command, const QVariant &result,
                const QString &code = QStringLiteral("0"));

    /// Opens a view cell and sets what it shows.
    QAbstractItemModel *showCell(const QString &viewCellUID, const QString &locationID,
                                 const QString &relayPath);
    /// The bookmarks in the list "all", "recent" or "api", as "A/b1 b2".
    QString identifiersIn(const QString &list);
    /// The bookmarks in a view cell's model, as "b1 b2".
    QString rowsIn(const QString &viewCellUID);

private:
    /// Answers from inside the send call.
    struct Answers final : standin::Server
    {
        standin::Answer execute(const QString &, const QVariant &,
                                const QString &relayPath) override
        {
            return byStation.value(relayPath);
        }
        QMap<QString, standin::Answer> byStation;
    };

    void makeObject();
    void noteSent(const standin::Traffic &traffic);
    bool step(const QString &text);
    void answerStep(const QString &target, const QString &code, const QVariant &value);
    void resetRules();
    void refuse(const QStringList &stations);
    void answerInside(const QString &station, const QString &code, const QVariant &value);
    QAbstractItemModel *modelOf(const QString &viewCellUID);
    void notePage(const QVariantMap &conditions);
    void watch(const QString &viewCellUID);
    void stepDuring(const QString &line);

    LoadedPlugin m_library;
    Start m_start;
    LogProbe *m_log;
    QPointer<QObject> m_object;
    PluginBase *m_plugin = nullptr;
    std::unique_ptr<SignalLines> m_signals;
    standin::Delivery m_delivery;
    Answers m_answers;
    QList<void *> m_contexts; ///< in the order in which they came up
    QString m_error;
    QStringList m_trace;
    QString m_during; ///< beginning of the line, " | ", step; empty when there is nothing to do
};

using standin::serverRecord;

/// The value of a text in JSON with single quotes for double ones; numbers are whole numbers.
QVariant valueOf(QString json);

} // namespace driver
