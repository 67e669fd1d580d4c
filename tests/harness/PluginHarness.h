#pragma once

#include "LogLines.h"
#include "ServerRecord.h"
#include "SignalLines.h"
#include "framework/Framework.h"
#include "topology/Topology.h"

#include <QtCore/QPluginLoader>
#include <QtCore/QPointer>
#include <QtCore/QStringList>

#include <memory>
#include <utility>

class PluginBase;
class QAbstractItemModel;

/// The built library in a scripted host: every command is recorded and answered by the test.
///
/// Three stations with one camera each are in the device tree: "A", "B" and "C" with the cameras
/// "A/1", "B/1" and "C/1", named "Station A" and "Camera A1" and so on.
class PluginHarness
{
public:
    enum Start { Initialised, Bare };

    /// Loads the library, makes a new object and hands it its host, unless @p start is Bare.
    explicit PluginHarness(Start start = Initialised);
    /// Deletes the object. The library stays loaded.
    ~PluginHarness();
    Q_DISABLE_COPY_MOVE(PluginHarness)

    /// Where the build has put the library.
    static QString libraryPath();
    static QString pluginID();

    PluginBase &plugin() const { return *m_plugin; }
    bool isAlive() const { return m_object; }
    /// As the client does when it shuts the plug-in down.
    void deletePlugin() { delete m_object.data(); }

    standin::Framework framework;
    standin::Topology topology;
    LogLines log;
    std::unique_ptr<SignalLines> emitted;

    /// Calls a method by its name, as QML does; the arguments' types choose the overload.
    template <typename Result = void, typename... Arguments>
    Result call(const char *method, const Arguments &...arguments)
    {
        const QList<QMetaType> types{QMetaType::fromType<Arguments>()...};
        const void *values[] = {nullptr, &arguments...};
        if constexpr (std::is_void_v<Result>) {
            invoke(method, types, QMetaType::fromType<void>(), values);
        } else {
            Result result{};
            values[0] = &result;
            invoke(method, types, QMetaType::fromType<Result>(), values);
            return result;
        }
    }

    /// Makes a call written as in QML, "addBookmark('c', null, 'A', 1, 2)"; null is a null string.
    /// Gives the result with its type; invalid when the method has none.
    QVariant run(const QString &text);

    /// The commands sent since the last call, as "AddBookmark@A" each; "!" before a refused one.
    QStringList takeSent();
    /// The one command sent since the last takeSent(); the test ends when there are more or none.
    standin::SentCommand onlySent();
    QList<standin::SentCommand> sent() const { return framework.sent(); }
    /// The commands sent since the last takeSent() with payload and context, "DeleteBookmarks@A
    /// [...] 1": no number without a context, equal numbers for equal contexts.
    QStringList describeSent() const;

    /// From now on notes all that leaves the plug-in, in its order: commands as in takeSent(), log
    /// lines and signals. Takes the places of the framework's observer and of both callbacks.
    void startTrace();
    QStringList takeTrace() { return std::exchange(m_trace, {}); }

    /// Delivers an answer as the host does.
    void answer(const QString &command, const QVariant &result, const QString &relayPath = {},
                void *context = nullptr, const QString &code = QStringLiteral("0"));
    void answer(const standin::SentCommand &command, const QVariant &result,
                const QString &code = QStringLiteral("0"));

    void grantPermission();
    void setServerTimeZone(const QByteArray &ianaId);

    /// Makes the plug-in hold these server records of one station as its list of all bookmarks.
    void storeBookmarks(const QVariantList &records,
                        const QString &relayPath = QStringLiteral("A"));

    /// The list model of a view cell that shows a location, as QML gets it.
    QAbstractItemModel *openViewCell(const QString &viewCellUID, const QString &locationID,
                                     const QString &relayPath);

private:
    /// By types instead of their names, which Qt versions write differently.
    void invoke(const char *name, const QList<QMetaType> &types, QMetaType resultType,
                const void *const *values);

    QPluginLoader m_loader;
    QPointer<QObject> m_object;
    PluginBase *m_plugin = nullptr;
    QStringList m_trace;
};

using standin::serverRecord;

/// The answer to a query: records with these identifiers, all of camera "1" at location "l".
QVariant queryAnswer(const QStringList &ids);

/// The bookmarks of a list of display records, as "relay path/identifier" each.
QString displayedIds(const QVariantList &list);

/// The first column of a model by one role, top to bottom.
QStringList rowsOf(const QAbstractItemModel *model, int role);
