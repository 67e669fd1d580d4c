#pragma once

#include "LoadedPlugin.h"
#include "LogProbe.h"
#include "PluginBase.h"
#include "ServerRecord.h"
#include "SignalLines.h"
#include "Trial.h"
#include "framework/Framework.h"
#include "topology/Topology.h"

#include <QtCore/QPointer>
#include <QtCore/QStringList>

#include <memory>
#include <utility>

class QAbstractItemModel;
class QMetaMethod;

namespace check {

/// The library under check in a host of its own, driven step by step; all that leaves the plug-in
/// is kept as lines of text, in its order.
///
/// Three stations are in the device tree, "A", "B" and "C", with the cameras "A/1", "B/1" and
/// "C/1"; they are called "Station A" and "Camera A1" and so on. The node "x" is no station. All
/// commands are accepted, and answered by the steps alone.
class Host
{
public:
    enum Start { Initialised, Bare };

    /// Loads the library and, unless Bare, introduces it to the host.
    explicit Host(const QString &library, Start start = Initialised);
    /// Deletes the object and unloads the library.
    ~Host();
    Q_DISABLE_COPY_MOVE(Host)

    /// Why there is no plug-in, or an empty text.
    QString error() const { return m_error; }

    PluginBase &plugin() const { return *m_plugin; }
    QObject *object() const { return m_object; }
    bool isAlive() const { return m_object; }
    void deleteObject() { delete m_object.data(); }
    /// A new object in place of the first, introduced alike; rules and what was sent are forgotten.
    void renewObject();
    /// How commands are taken and answered from now on where no step says otherwise; outlives the
    /// object.
    void setDefaultDelivery(const standin::Delivery &delivery);
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
    /// Called with each line, from inside of what it tells of.
    std::function<void(const QString &line)> onLine;

    /// Carries out steps, one a line, as far as the object lives; blank lines are skipped.
    /// @return the trace, one line each
    ///
    ///   addBookmark('1', null, 'A', 1, 2)   a call as in QML, null is a null string; "= RESULT"
    ///   grant  connect  initialise          the permission, a connection, Init
    ///   answer 1 ok {...}                   the answer to the first command that was sent
    ///   reply AddBookmark@A -5 {...}        an answer without a context
    ///   event AddBookmark@A {...}
    ///   refuse A B                          these stations take no commands; "refuse" alone: none
    ///   topology gone                       the topology plug-in, until the object is renewed
    ///   show cell location A                opens a view cell and sets what it shows
    ///   list all | recent | api             the identifiers in a list; "list [A/b1 b2]"
    ///   rows cell                           those in a view cell's model
    ///   watch cell                          notes "changed cell" when rows come into its model or
    ///   go during timeline clear() | STEP      carries out STEP from inside the next such line
    ///   delete                              the object
    QString play(const QString &steps);

    /// A call written as in QML, by name and arguments. Invalid for a void method; a text that no
    /// method fits is noted in the trace.
    QVariant call(const QString &text);
    /// The same with given values. False when no overload takes as many values of these types.
    bool call(const QByteArray &method, QVariantList arguments, QVariant *result = nullptr);
    bool hasMethod(const QByteArray &name) const;
    /// Calls one method with values that are of its types already.
    QVariant callMethod(const QMetaMethod &method, QVariantList arguments);

    /// Delivers an answer as the host does.
    void answer(const QString &command, const QVariant &result, const QString &relayPath,
                void *context = nullptr, const QString &code = QStringLiteral("0"));
    void answer(const standin::SentCommand &command, const QVariant &result,
                const QString &code = QStringLiteral("0"));

    QAbstractItemModel *showCell(const QString &viewCellUID, const QString &locationID,
                                 const QString &relayPath);

private:
    void makeObject();
    void noteSent(const standin::Traffic &traffic);
    void step(const QString &text);
    void answerStep(const QString &target, const QString &code, const QVariant &value);
    void resetRules();
    void refuse(const QStringList &stations);
    QString identifiersOf(const QString &list);
    QAbstractItemModel *modelOf(const QString &viewCellUID);
    QString rowsOf(const QString &viewCellUID);
    void watch(const QString &viewCellUID);
    void stepDuring(const QString &line);

    LoadedPlugin m_library;
    Start m_start;
    QPointer<QObject> m_object;
    PluginBase *m_plugin = nullptr;
    std::unique_ptr<SignalLines> m_signals;
    standin::Delivery m_delivery;
    QList<void *> m_contexts; ///< in the order in which they came up
    QString m_error;
    QStringList m_trace;
    QString m_during; ///< beginning of the line, " | ", step; empty when there is nothing to do
};

/// A host with the logging library, whose lines go into the trace.
class LoggingHost
{
public:
    explicit LoggingHost(Trial &trial, Host::Start start = Host::Initialised);
    ~LoggingHost();
    Q_DISABLE_COPY_MOVE(LoggingHost)

    /// Whether there is a plug-in; if not, the trial has failed.
    explicit operator bool() const { return m_host->error().isEmpty(); }
    Host *operator->() const { return m_host.get(); }
    Host &operator*() const { return *m_host; }
    LogProbe &log() { return m_log; }

private:
    LogProbe m_log;
    std::unique_ptr<Host> m_host;
};

using standin::serverRecord;

/// The value of a text in JSON with single quotes for double ones; numbers are whole numbers.
QVariant valueOf(QString json);

} // namespace check
