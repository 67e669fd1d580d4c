#include "TestHost.h"

#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>
#include <QtQuickTest/quicktest.h>

#include <optional>

/// Gives the QML tests access to the host; "bookmarks" is the plug-in's object.
class Host : public QObject
{
    Q_OBJECT

public:
    /// Returns the commands since the last call: maps of command, payload and relayPath.
    Q_INVOKABLE QVariantList takeSent()
    {
        QVariantList list;
        for (const standin::SentCommand &sent : m_host.framework.sent()) {
            list.append(QVariantMap{{QStringLiteral("command"), sent.command},
                                    {QStringLiteral("payload"), sent.payload},
                                    {QStringLiteral("relayPath"), sent.relayPath}});
        }
        m_lastSent = m_host.framework.sent();
        m_host.framework.clearSent();
        return list;
    }

    /// Returns the type of a value in the payload of a command that takeSent() has returned.
    Q_INVOKABLE QString typeInPayload(int index, const QString &key) const
    {
        const QVariant value = m_lastSent.at(index).payload.toMap().value(key);
        return QString::fromLatin1(value.metaType().name());
    }

    /// Answers a command that takeSent() has returned.
    Q_INVOKABLE void answer(int index, const QVariant &result)
    {
        m_host.answer(m_lastSent.at(index), result);
    }

    TestHost m_host;

private:
    QList<standin::SentCommand> m_lastSent;
};

class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    // The host looks for the logging library beside the application.
    void applicationAvailable() { m_host.emplace(); }
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->rootContext()->setContextProperty(QStringLiteral("host"), &*m_host);
        engine->rootContext()->setContextProperty(QStringLiteral("qtMinor"), QT_VERSION_MINOR);
        engine->rootContext()->setContextProperty(QStringLiteral("bookmarks"),
                                                  m_host->m_host.object());
    }

private:
    std::optional<Host> m_host;
};

QUICK_TEST_MAIN_WITH_SETUP(qmlinterface, Setup)
#include "tst_qmlinterface.moc"
