#include "framework/DeepCopy.h"
#include "framework/Framework.h"
#include "topology/Topology.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using namespace standin;

namespace {

const char PluginId[] = "2F6394EE90434A7190D7511370AFAE17";

QString pluginId()
{
    return QString::fromLatin1(PluginId);
}

/// Writes down what the framework delivers, as in "Add=5/0@station".
class Plugin : public PluginBase
{
public:
    QStringList log;
    QVariantList values;
    QList<void *> contexts;
    std::function<void()> onDelivery;

    bool InitialPluginBase(QQmlContext *, void *, FrameworkWrapperBase *) override { return true; }
    bool Init(QQmlContext *) override { return true; }
    void EventProcessorEx(QString, ConfigBase *, qint64, int, int, QVariant,
                          const QString &) override
    {
    }
    void CommandProcessorEx(QString, ConfigBase *, QVariant, void *, QString, QString, bool,
                            const QString &) override
    {
    }

    void EventProcessor(QString eventName, qint64, int, int, QVariant data,
                        const QString &relayPath) override
    {
        note(eventName + QLatin1Char('!') + data.toString() + QLatin1Char('@') + relayPath, data);
    }

    void CommandProcessor(QString command, QVariant result, void *context, QString resultCode,
                          QString, bool, const QString &relayPath) override
    {
        contexts.append(context);
        note(command + QLatin1Char('=') + result.toString() + QLatin1Char('/') + resultCode +
                 QLatin1Char('@') + relayPath,
             result);
    }

    QString text() const { return log.join(QLatin1Char(' ')); }

private:
    void note(const QString &line, const QVariant &value)
    {
        log.append(line);
        values.append(value);
        const auto handler = onDelivery;
        if (handler)
            handler();
    }
};

/// Answers every command with its payload in brackets.
class EchoServer : public Server
{
public:
    QStringList executed;

    Answer execute(const QString &command, const QVariant &payload,
                   const QString &relayPath) override
    {
        executed.append(command + QLatin1Char('@') + relayPath);
        return {QVariant(QLatin1Char('[') + payload.toString() + QLatin1Char(']'))};
    }
};

struct Client
{
    EchoServer server;
    Framework framework;
    std::unique_ptr<Plugin> plugin = std::make_unique<Plugin>();

    Client()
    {
        framework.addPlugin(pluginId(), plugin.get());
        framework.setServer(&server);
    }

    bool send(const char *command, const QVariant &payload = {}, const char *relayPath = "",
              void *context = nullptr)
    {
        return framework.SendCommand(nullptr, pluginId(), QString::fromLatin1(command), payload,
                                     context, false, QString::fromLatin1(relayPath));
    }

    /// Three commands with the payloads 1 to 3.
    void sendThree()
    {
        send("A", 1);
        send("B", 2, "s");
        send("C", 3, "s");
    }
};

} // namespace

Q_DECLARE_METATYPE(Delivery)

class TestFramework : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void deliversAsTheRuleSays_data();
    void deliversAsTheRuleSays();
    void refusedAndFailedCommandsAreNotExecuted();
    void delaysAnswers();
    void prefersTheMostExactRule();
    void releasesHeldAnswers_data();
    void releasesHeldAnswers();
    void recordsWhatWasSent();
    void answersByHandWithoutServer();
    void numbersAllTraffic();
    void sendsEventsToAllPlugins();
    void findsPlugins();
    void pluginMayGoAwayInsideADelivery_data();
    void pluginMayGoAwayInsideADelivery();
    void pluginMaySendInsideADelivery_data();
    void pluginMaySendInsideADelivery();
    void dropsWhatIsUnderWayAtItsEnd();
    void copiesDeeply_data();
    void copiesDeeply();
    void copiesAnyDepth();
    void servesTheRolesOfTheTopology_data();
    void servesTheRolesOfTheTopology();
    void topologyFollowsItsNodes();
};

void TestFramework::deliversAsTheRuleSays_data()
{
    QTest::addColumn<Delivery>("delivery");
    QTest::addColumn<QString>("inside");
    QTest::addColumn<QString>("later");
    const auto row = [](const char *name, const Delivery &delivery, const char *inside,
                        const char *later) {
        QTest::newRow(name) << delivery << QString::fromLatin1(inside)
                            << QString::fromLatin1(later);
    };
    const char all[] = "A=[1]/0@ B=[2]/0@s C=[3]/0@s";
    row("default", Delivery(), "", all);
    row("queued", Delivery::queued(), "", all);
    row("immediate", Delivery::immediate(), all, all);
    row("immediate twice", Delivery::immediate().times(2),
        "A=[1]/0@ A=[1]/0@ B=[2]/0@s B=[2]/0@s C=[3]/0@s C=[3]/0@s",
        "A=[1]/0@ A=[1]/0@ B=[2]/0@s B=[2]/0@s C=[3]/0@s C=[3]/0@s");
    row("held", Delivery::held(), "", "");
    row("twice", Delivery::twice(), "",
        "A=[1]/0@ A=[1]/0@ B=[2]/0@s B=[2]/0@s C=[3]/0@s C=[3]/0@s");
    row("never", Delivery::never(), "", "");
    row("refused", Delivery::refused(), "", "");
    row("failed", Delivery::failed(QStringLiteral("-999")), "", "A=/-999@ B=/-999@s C=/-999@s");
    row("failed with an empty code", Delivery::failed({}), "", "A=/@ B=/@s C=/@s");
    row("failed at once", Delivery::immediate().failing(QStringLiteral("1")), "A=/1@ B=/1@s C=/1@s",
        "A=/1@ B=/1@s C=/1@s");
    row("wrong payload", Delivery::wrongPayload(7), "", "A=7/0@ B=7/0@s C=7/0@s");
    row("reversed", Delivery::reversed(), "", "C=[3]/0@s B=[2]/0@s A=[1]/0@");
}

void TestFramework::deliversAsTheRuleSays()
{
    QFETCH(const Delivery, delivery);
    Client client;
    client.framework.rules().setDefault(delivery);
    client.sendThree();
    QTEST(client.plugin->text(), "inside");
    QCoreApplication::processEvents();
    QTEST(client.plugin->text(), "later");
}

void TestFramework::refusedAndFailedCommandsAreNotExecuted()
{
    Client client;
    DeliveryRules &rules = client.framework.rules();
    rules.setForCommand(QStringLiteral("A"), Delivery::refused());
    rules.setForCommand(QStringLiteral("B"), Delivery::failed(QStringLiteral("1")));
    rules.setForCommand(QStringLiteral("C"), Delivery::never());
    QVERIFY(!client.send("A"));
    QVERIFY(client.send("B"));
    QVERIFY(client.send("C", {}, "s"));
    QCOMPARE(client.server.executed, QStringList{QStringLiteral("C@s")});
    QCOMPARE(client.framework.sent().size(), 3);
    QVERIFY(!client.framework.sent().constFirst().accepted);
}

void TestFramework::delaysAnswers()
{
    Client client;
    client.framework.rules().setForCommand(QStringLiteral("A"), Delivery::delayed(30));
    QElapsedTimer clock;
    clock.start();
    client.send("A", 1);
    client.send("B", 2);
    QTRY_COMPARE(client.plugin->log.size(), 2);
    QVERIFY(clock.elapsed() >= 25);
    QCOMPARE(client.plugin->text(), QStringLiteral("B=[2]/0@ A=[1]/0@"));
}

void TestFramework::prefersTheMostExactRule()
{
    Client client;
    DeliveryRules &rules = client.framework.rules();
    const auto answers = [](const char *text) {
        return Delivery::immediate().replacing(QString::fromLatin1(text));
    };
    rules.setDefault(answers("default"));
    rules.setForStation(QStringLiteral("s"), answers("station"));
    rules.setForCommand(QStringLiteral("A"), answers("command"));
    rules.setFor(QStringLiteral("t"), QStringLiteral("A"), answers("both"));
    client.send("B");
    client.send("B", {}, "s");
    client.send("A", {}, "s");
    client.send("A", {}, "t");
    QCOMPARE(client.plugin->text(), QStringLiteral("B=default/0@ B=station/0@s A=command/0@s "
                                                   "A=both/0@t"));
    rules.reset();
    client.send("A");
    QCOMPARE(client.plugin->log.size(), 4);
}

void TestFramework::releasesHeldAnswers_data()
{
    using Release = std::function<void(Framework &)>;
    QTest::addColumn<Release>("release");
    QTest::addColumn<QString>("delivered");
    QTest::addColumn<int>("left");
    const auto row = [](const char *name, const Release &release, const char *delivered, int left) {
        QTest::newRow(name) << release << QString::fromLatin1(delivered) << left;
    };
    row(
        "all", [](Framework &framework) { framework.releaseAll(); }, "A=[1]/0@ B=[2]/0@s C=[3]/0@s",
        0);
    row(
        "one", [](Framework &framework) { QVERIFY(framework.release(1)); }, "B=[2]/0@s", 2);
    row(
        "one that is not there",
        [](Framework &framework) {
            QVERIFY(!framework.release(3));
            QVERIFY(!framework.release(-1));
        },
        "", 3);
    row(
        "reordered, doubled, lost",
        [](Framework &framework) {
            framework.releaseInOrder({2, 0, 2});
        },
        "C=[3]/0@s A=[1]/0@ C=[3]/0@s", 0);
}

void TestFramework::releasesHeldAnswers()
{
    QFETCH(const std::function<void(Framework &)>, release);
    Client client;
    client.framework.rules().setDefault(Delivery::held());
    client.sendThree();
    release(client.framework);
    QTEST(client.plugin->text(), "delivered");
    QTEST(int(client.framework.held().size()), "left");
}

void TestFramework::recordsWhatWasSent()
{
    Framework framework;
    int host = 0;
    int context = 0;
    QString station = QStringLiteral("s");
    QVERIFY(framework.SendCommand(&host, pluginId(), QStringLiteral("A"),
                                  QVariantMap{{QStringLiteral("k"), 1U}}, &context, true, station));
    station[0] = u'x';

    const SentCommand sent = framework.sent().constFirst();
    QCOMPARE(sent.hostHandle, &host);
    QCOMPARE(sent.pluginID, pluginId());
    QCOMPARE(sent.command, QStringLiteral("A"));
    QCOMPARE(sent.payload, QVariant(QVariantMap{{QStringLiteral("k"), 1U}}));
    QCOMPARE(sent.context, &context);
    QVERIFY(sent.flag && sent.accepted);
    QCOMPARE(sent.relayPath, QStringLiteral("s"));

    framework.clearSent();
    framework.setRecording(false);
    framework.SendCommand(nullptr, {}, {}, {}, nullptr, false, {});
    QVERIFY(framework.sent().isEmpty());
}

void TestFramework::answersByHandWithoutServer()
{
    Client client;
    client.framework.setServer(nullptr);
    int context = 0;
    client.send("A", 1, "s", &context);
    QCoreApplication::processEvents();
    QVERIFY(client.plugin->log.isEmpty());

    const SentCommand sent = client.framework.sent().constFirst();
    client.framework.answer(sent, 5);
    client.framework.answer(sent, {}, QStringLiteral("1"));
    QCOMPARE(client.plugin->text(), QStringLiteral("A=5/0@s A=/1@s"));
    QCOMPARE(client.plugin->contexts, (QList<void *>{&context, &context}));
}

void TestFramework::numbersAllTraffic()
{
    Client client;
    QStringList seen;
    client.framework.setObserver([&](const Traffic &traffic) {
        const char *kinds[] = {"sent", "answered", "event"};
        seen.append(QStringLiteral("%1 %2 %3 for %4: %5 %6")
                        .arg(traffic.sequence)
                        .arg(QString::fromLatin1(kinds[int(traffic.kind)]), traffic.name)
                        .arg(traffic.request)
                        .arg(traffic.value.toString(), traffic.resultCode));
    });
    client.send("A", 1);
    client.framework.rules().setDefault(Delivery::refused());
    client.send("B", 2);
    client.framework.sendEvent(QStringLiteral("E"), 3, {});
    QCoreApplication::processEvents();
    QCOMPARE(seen, (QStringList{QStringLiteral("1 sent A for 0: 1 "),
                                QStringLiteral("2 sent B for 0: 2 "),
                                QStringLiteral("3 event E for 0: 3 "),
                                QStringLiteral("4 answered A for 1: [1] 0")}));
}

void TestFramework::sendsEventsToAllPlugins()
{
    Client client;
    Plugin second;
    Topology noPlugin;
    client.framework.addPlugin(QStringLiteral("second"), &second);
    client.framework.addPlugin(Topology::pluginID(), &noPlugin);
    client.framework.sendEvent(QStringLiteral("E"), QStringLiteral("data"), QStringLiteral("s"));
    QCOMPARE(client.plugin->text(), QStringLiteral("E!data@s"));
    QCOMPARE(second.text(), QStringLiteral("E!data@s"));
}

void TestFramework::findsPlugins()
{
    Client client;
    QCOMPARE(client.framework.FindPlugin(nullptr, pluginId()), client.plugin.get());
    QCOMPARE(client.framework.FindPlugin(nullptr, pluginId().toLower()), nullptr);
    client.framework.removePlugin(pluginId());
    QCOMPARE(client.framework.FindPlugin(nullptr, pluginId()), nullptr);
    client.framework.addPlugin(pluginId(), client.plugin.get());
    client.plugin.reset();
    QCOMPARE(client.framework.FindPlugin(nullptr, pluginId()), nullptr);
}

void TestFramework::pluginMayGoAwayInsideADelivery_data()
{
    QTest::addColumn<Delivery>("delivery");
    QTest::newRow("queued twice") << Delivery::twice();
    QTest::newRow("inside twice") << Delivery::immediate().times(2);
    QTest::newRow("held twice") << Delivery::held().times(2);
    QTest::newRow("reversed twice") << Delivery::reversed().times(2);
}

void TestFramework::pluginMayGoAwayInsideADelivery()
{
    QFETCH(const Delivery, delivery);
    Client client;
    client.framework.rules().setDefault(delivery);
    int deliveries = 0;
    client.plugin->onDelivery = [&] {
        ++deliveries;
        client.plugin.reset();
    };
    client.sendThree();
    QCoreApplication::processEvents();
    client.framework.releaseAll();
    client.framework.sendEvent(QStringLiteral("E"), {}, {});
    QCOMPARE(deliveries, 1);
}

void TestFramework::pluginMaySendInsideADelivery_data()
{
    QTest::addColumn<Delivery>("delivery");
    QTest::newRow("queued") << Delivery::queued();
    QTest::newRow("inside") << Delivery::immediate();
    QTest::newRow("reversed") << Delivery::reversed();
}

void TestFramework::pluginMaySendInsideADelivery()
{
    QFETCH(const Delivery, delivery);
    Client client;
    client.framework.rules().setDefault(delivery);
    client.plugin->onDelivery = [&client] {
        const auto count = client.plugin->log.size();
        if (count < 100)
            client.send("A", count);
    };
    client.send("A", 0);
    QTRY_COMPARE(client.plugin->log.size(), 100);
    QCOMPARE(client.plugin->log.constLast(), QStringLiteral("A=[99]/0@"));
}

void TestFramework::dropsWhatIsUnderWayAtItsEnd()
{
    Plugin plugin;
    EchoServer server;
    {
        Framework framework;
        framework.addPlugin(pluginId(), &plugin);
        framework.setServer(&server);
        const auto deliveries = {Delivery::queued(), Delivery::delayed(1), Delivery::held(),
                                 Delivery::reversed()};
        for (const Delivery &delivery : deliveries) {
            framework.rules().setDefault(delivery);
            framework.SendCommand(nullptr, pluginId(), {}, {}, nullptr, false, {});
        }
        QCOMPARE(server.executed.size(), 4);
    }
    // Fires after all that was posted and after the timer above.
    bool over = false;
    QTimer::singleShot(2, this, [&over] { over = true; });
    QTRY_VERIFY(over);
    QVERIFY(plugin.log.isEmpty());
}

void TestFramework::copiesDeeply_data()
{
    QTest::addColumn<QVariant>("value");
    const QString text = QStringLiteral("text");
    QTest::newRow("invalid") << QVariant();
    QTest::newRow("number") << QVariant(qint64(1) << 40);
    QTest::newRow("unsigned") << QVariant(4000000000U);
    QTest::newRow("text") << QVariant(text);
    QTest::newRow("empty text") << QVariant(QString::fromLatin1(""));
    QTest::newRow("null text") << QVariant(QString());
    QTest::newRow("bytes") << QVariant(QByteArrayLiteral("by\0tes"));
    QTest::newRow("empty bytes") << QVariant(QByteArray(""));
    QTest::newRow("null bytes") << QVariant(QByteArray());
    QTest::newRow("texts") << QVariant(QStringList{text, QString(), QString::fromLatin1("")});
    QTest::newRow("empty map") << QVariant(QVariantMap());
    QTest::newRow("empty list") << QVariant(QVariantList());
    QTest::newRow("map") << QVariant(QVariantMap{{text, text}, {QString(), QVariant()}});
    QTest::newRow("hash") << QVariant(QVariantHash{{text, 1.5}});
    QTest::newRow("maps in lists in a map") << QVariant(QVariantMap{
        {text, QVariantList{QVariantMap{{text, QVariantList{1, text}}}, QVariantList()}}});
}

void TestFramework::copiesDeeply()
{
    QFETCH(const QVariant, value);
    const QVariant copy = deepCopy(value);
    QCOMPARE(copy.typeId(), value.typeId());
    QCOMPARE(copy.isNull(), value.isNull());
    QCOMPARE(copy, value);

    if (value.typeId() == QMetaType::QString && !value.toString().isEmpty())
        QVERIFY(copy.toString().constData() != value.toString().constData());
    QCOMPARE(copy.toString().isNull(), value.toString().isNull());
    const QVariantMap original = value.toMap();
    const QVariantMap rebuilt = copy.toMap();
    if (!original.isEmpty() && !original.lastKey().isEmpty())
        QVERIFY(original.lastKey().constData() != rebuilt.lastKey().constData());
}

void TestFramework::copiesAnyDepth()
{
    constexpr int Depth = 5000;
    QVariant value = QStringLiteral("bottom");
    for (int level = 0; level < Depth; ++level) {
        if (level % 2)
            value = QVariantList{value};
        else
            value = QVariantMap{{QStringLiteral("k"), value}};
    }
    QVariant copy = deepCopy(value);
    for (int level = 0; level < Depth; ++level) {
        const bool isList = copy.typeId() == QMetaType::QVariantList;
        copy = isList ? copy.toList().value(0) : copy.toMap().value(QStringLiteral("k"));
    }
    QCOMPARE(copy, QVariant(QStringLiteral("bottom")));
}

void TestFramework::servesTheRolesOfTheTopology_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QVariantMap>("expected");
    const auto row = [](const char *name, const char *key, const char *value,
                        const QVariantMap &expected) {
        QTest::newRow(name) << QString::fromLatin1(key) << QString::fromLatin1(value) << expected;
    };
    const QString server;
    const QString station = QStringLiteral("s");
    const QString camera = QStringLiteral("s/c");
    row("names", "idRole", "nameRole",
        {{server, QStringLiteral("Server")},
         {station, QStringLiteral("Station")},
         {camera, QStringLiteral("Camera")}});
    row("types", "nodeIDRole", "nodeTypeRole", {{server, 0}, {station, 1}, {camera, 2}});
    row("backwards", "nameRole", "idRole",
        {{QStringLiteral("Server"), server},
         {QStringLiteral("Station"), station},
         {QStringLiteral("Camera"), camera}});
    row("unknown key role", "idrole", "nameRole", {});
    row("unknown value role", "idRole", "", {});
}

// Called by name, as other plug-ins do.
void TestFramework::servesTheRolesOfTheTopology()
{
    QFETCH(const QString, key);
    QFETCH(const QString, value);
    Topology topology;
    topology.setStation({}, QStringLiteral("Server"), Topology::ConnectedServer);
    topology.setStation(QStringLiteral("s"), QStringLiteral("Station"));
    topology.setCamera(QStringLiteral("s/c"), QStringLiteral("Camera"));

    QVariantMap values;
    QVERIFY(QMetaObject::invokeMethod(&topology, "getValuesFromModel", Qt::DirectConnection,
                                      Q_RETURN_ARG(QVariantMap, values), Q_ARG(int, 0),
                                      Q_ARG(QString, key), Q_ARG(QString, value)));
    QTEST(values, "expected");
    QCOMPARE(topology.callCount(), 1);
}

void TestFramework::topologyFollowsItsNodes()
{
    Topology topology;
    const auto names = [&topology] {
        return topology.getValuesFromModel(0, QStringLiteral("idRole"), QStringLiteral("nameRole"));
    };
    const QString id = QStringLiteral("s");
    topology.setStation(id, QStringLiteral("one"));
    topology.setStation(id, QStringLiteral("two"));
    QCOMPARE(names(), (QVariantMap{{id, QStringLiteral("two")}}));
    QVERIFY(topology.rename(id, QStringLiteral("three")));
    QVERIFY(!topology.rename(QStringLiteral("x"), {}));
    QCOMPARE(names(), (QVariantMap{{id, QStringLiteral("three")}}));
    QVERIFY(topology.remove(id));
    QVERIFY(!topology.remove(id));
    QCOMPARE(names(), QVariantMap());
}

QTEST_GUILESS_MAIN(TestFramework)
#include "tst_framework.moc"
