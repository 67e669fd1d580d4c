#include "PluginBase.h"
#include "ServerRecord.h"
#include "framework/Framework.h"
#include "topology/Topology.h"

#include <QtCore/QPluginLoader>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>
#include <QtQuickControls2/QQuickStyle>
#include <QtQuickTest/quicktest.h>

using namespace Qt::StringLiterals;

/// A station that stores bookmarks in memory. It fails for one camera or command.
class ScriptedServer : public QObject, public standin::Server
{
    Q_OBJECT

public:
    Q_INVOKABLE void reset(const QString &failing)
    {
        m_failing = failing;
        m_records.clear();
        for (int i = 1; i <= 3; ++i)
            add(standin::serverRecord({}, u"1"_s, u"l"_s, i * 60'000, i * 60'000 + 30'000,
                                      u"stored %1"_s.arg(i)));
    }

    Q_INVOKABLE QStringList descriptions() const
    {
        QStringList texts;
        for (const QVariant &record : m_records)
            texts.append(record.toMap().value(u"Description"_s).toString());
        return texts;
    }

    standin::Answer execute(const QString &command, const QVariant &payload,
                            const QString &relayPath) override
    {
        if (command == u"QuerySettingPermission")
            return {true};
        if (command == u"QuerySevTimezone")
            return {u"UTC"_s};
        if (relayPath != u"A" || command == m_failing)
            return {{}, u"4"_s};
        if (command == u"AddBookmarks") {
            QVariantList added;
            const QVariantList wanted = payload.toList();
            for (const QVariant &record : wanted)
                added.append(add(record.toMap()));
            return {added};
        }
        if (command == u"DeleteBookmark") {
            m_records.removeIf([&](const QVariant &record) {
                return record.toMap().value(u"BookmarkID"_s) ==
                       payload.toMap().value(u"BookmarkID"_s);
            });
            return {payload.toMap().value(u"BookmarkID"_s)};
        }
        return {QVariantMap{{u"Bookmarks"_s, m_records}}};
    }

private:
    QVariantMap add(QVariantMap record)
    {
        if (record.value(u"CameraID"_s) == m_failing)
            return record; // without an identifier: not added
        record.insert(u"BookmarkID"_s, u"b%1"_s.arg(++m_lastID));
        m_records.append(record);
        return record;
    }

    QString m_failing;
    QVariantList m_records;
    int m_lastID = 0;
};

class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable() { QQuickStyle::setStyle(u"Fusion"_s); }

    void qmlEngineAvailable(QQmlEngine *engine)
    {
        m_topology.setStation(u"A"_s, u"Harbour"_s);
        m_topology.setCamera(u"A/1"_s, u"Gate"_s);
        m_topology.setCamera(u"A/2"_s, u"Crane"_s);
        auto *const plugin = qobject_cast<PluginBase *>(m_loader.instance());
        if (!plugin)
            qFatal("%s", qPrintable(m_loader.errorString()));
        m_framework.setServer(&m_server);
        m_framework.addPlugin(standin::Topology::pluginID(), &m_topology);
        plugin->InitialPluginBase(engine->rootContext(), nullptr, &m_framework);
        m_framework.addPlugin(plugin->pluginID, plugin);
        plugin->PluginServerConnected();
        engine->addImportPath(u"qrc:/tessaline"_s);
        engine->rootContext()->setContextProperty(u"pluginObject"_s, plugin);
        engine->rootContext()->setContextProperty(u"server"_s, &m_server);
    }

    void cleanupTestCase() { delete m_loader.instance(); }

private:
    QPluginLoader m_loader{QStringLiteral(PLUGIN_PATH)};
    ScriptedServer m_server;
    standin::Topology m_topology;
    standin::Framework m_framework;
};

QUICK_TEST_MAIN_WITH_SETUP(client, Setup)
#include "tst_client.moc"
