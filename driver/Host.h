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

/// Runs a build of the plug-in step by step and records its commands, signals, log lines and
/// results as the lines of a trace. docs/testing.md describes steps and lines.
///
/// The topology has the stations "A", "B" and "C", named "Station A" and so on. Each has one
/// camera: "A/1", named "Camera A1", and so on. The node "x" is the connected server. By default
/// the host accepts all commands, and only steps answer them.
class Host
{
public:
    enum Start { Initialised, Bare };

    /// Loads the library and creates its object. Initialised also calls InitialPluginBase.
    /// @param log source of the log lines in the trace; not owned, null for no log lines
    explicit Host(const QString &library, Start start = Initialised, LogProbe *log = nullptr);
    /// Deletes the object and unloads the library.
    ~Host();
    Q_DISABLE_COPY_MOVE(Host)

    /// @return the reason why the plug-in can't be used; empty if it can
    QString error() const { return m_error; }

    PluginBase &plugin() const { return *m_plugin; }
    QObject *object() const { return m_object; }
    bool isAlive() const { return m_object; }
    void deleteObject() { delete m_object.data(); }
    /// Deletes the object, calls clearTraffic() and creates a new object as the constructor does.
    void recreateObject();
    /// Sets how the host accepts and answers commands for which no step has set a rule.
    /// recreateObject() keeps the setting.
    void setDefaultDelivery(const standin::Delivery &delivery);
    /// Restores the stations and cameras of a new Host.
    void resetTopology();
    /// Clears the sent commands, the trace and the rules that steps have set.
    void clearTraffic();
    /// Calls InitialPluginBase.
    /// @param framework not owned; may be null
    void initialise(FrameworkWrapperBase *framework);

    standin::Framework framework;
    standin::Topology topology;

    /// Removes all lines from the trace and returns them.
    QStringList takeTrace() { return std::exchange(m_trace, {}); }
    /// Appends a line to the trace.
    void note(const QString &line);
    /// Called with each line of the trace, inside the signal, send call or log call that the line
    /// reports.
    std::function<void(const QString &line)> onLine;

    /// Clears the trace and runs steps until the object is deleted. An unknown step ends the
    /// process with a message.
    /// @param steps one step on each line; blank lines are ignored
    /// @param file, line place of the steps, for the message
    /// @return the trace, one line for each entry
    QString play(const QString &steps, const char *file = __builtin_FILE(),
                 int line = __builtin_LINE());

    /// Calls a method of the plug-in. If no overload accepts the arguments, the trace gets the line
    /// "no method accepts ...".
    /// @param text the call as in QML, with JSON values: "updateBookmark('b', null)"
    /// @return the result; invalid for a void method and if no overload accepts the arguments
    QVariant call(const QString &text);
    QVariant call(const QByteArray &method, const QVariantList &arguments);
    bool hasMethod(const QByteArray &name) const;

    /// Delivers an answer through CommandProcessor.
    /// @param code the result code; "0" for success
    void answer(const QString &command, const QVariant &result, const QString &relayPath,
                void *context = nullptr, const QString &code = QStringLiteral("0"));
    void answer(const standin::SentCommand &command, const QVariant &result,
                const QString &code = QStringLiteral("0"));

    /// Opens a view cell and sets its focus.
    /// @return its list model, owned by the plug-in; null if the plug-in could not create it
    QAbstractItemModel *showCell(const QString &viewCellUID, const QString &locationID,
                                 const QString &relayPath);
    /// @param list "all", "recent" or "api"
    /// @return the bookmarks in the list: relay path, "/" and identifier, or the identifier alone
    /// for the empty relay path; "A/b1 b2"
    QString identifiersIn(const QString &list);
    /// @return the identifiers in a view cell's model, "b1 b2"
    QString rowsIn(const QString &viewCellUID);

private:
    /// Supplies the answers that stations deliver inside the send call.
    struct InsideAnswers final : standin::Server
    {
        standin::Answer execute(const QString &, const QVariant &,
                                const QString &relayPath) override
        {
            return byStation.value(relayPath);
        }
        QMap<QString, standin::Answer> byStation;
    };

    void createObject();
    void noteSent(const standin::Traffic &traffic);
    bool step(const QString &text);
    void answerStep(const QString &target, const QString &code, const QVariant &value);
    void resetRules();
    void reject(const QStringList &stations);
    void answerInside(const QString &station, const QString &code, const QVariant &value);
    QAbstractItemModel *timelineModel(const QString &viewCellUID);
    void notePage(const QVariantMap &conditions);
    void watch(const QString &viewCellUID);
    void runStepDuring(const QString &line);

    LoadedPlugin m_library;
    Start m_start;
    LogProbe *m_log;
    QPointer<QObject> m_object;
    PluginBase *m_plugin = nullptr;
    std::unique_ptr<SignalLines> m_signals;
    standin::Delivery m_delivery;
    InsideAnswers m_insideAnswers;
    QList<void *> m_contexts; ///< distinct contexts in the order of their first use
    QString m_error;
    QStringList m_trace;
    QString m_during; ///< argument of the step "during", "LINE | STEP"; empty if there is none
};

using standin::serverRecord;

/// Parses a JSON value that has single quotes instead of double quotes. Ends the process if the
/// text is not JSON.
/// @return the value, with whole numbers as qlonglong; invalid for an empty text
QVariant parseValue(QString json);

} // namespace driver
