#include "framework/DeepCopy.h"
#include "framework/Framework.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtTest/QTest>

#include <functional>
#include <memory>
#include <thread>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace standin;

namespace {

QString pluginId()
{
    return u"2F6394EE90434A7190D7511370AFAE17"_s;
}

/// Records every delivery of the framework as text, for example "Add=5/0@station".
class Plugin : public PluginBase
{
public:
    QStringList log;
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
        log.append(eventName + u'!' + data.toString() + u'@' + relayPath);
    }

    void CommandProcessor(QString command, QVariant result, void *, QString resultCode, QString,
                          bool, const QString &relayPath) override
    {
        log.append(command + u'=' + result.toString() + u'/' + resultCode + u'@' + relayPath);
        // A copy, because the handler may delete this object.
        const auto handler = onDelivery;
        if (handler)
            handler();
    }

    QString text() const { return log.join(u' '); }
};

/// Answers every command with its payload in brackets.
class EchoServer : public Server
{
public:
    QString executed;

    Answer execute(const QString &command, const QVariant &payload, const QString &) override
    {
        executed += command;
        return {QVariant(u'[' + payload.toString() + u']')};
    }
};

/// Like EchoServer, but answers in another thread when answerAll() is called.
class ThreadedServer : public AsyncServer
{
public:
    EchoServer server;

    void execute(const QString &command, const QVariant &payload, const QString &relayPath,
                 const Completion &done) override
    {
        m_calls.append([=] { done(server.execute(command, payload, relayPath)); });
    }

    void answerAll()
    {
        std::thread thread([this] {
            for (const auto &call : std::exchange(m_calls, {}))
                call();
        });
        thread.join();
    }

private:
    QList<std::function<void()>> m_calls;
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

    bool send(const QString &command, const QVariant &payload = {}, const QString &relayPath = {})
    {
        return framework.SendCommand(nullptr, pluginId(), command, payload, nullptr, false,
                                     relayPath);
    }

    /// Sends three commands with the payloads 1 to 3. Returns the number of accepted ones.
    int sendThree() { return send(u"A"_s, 1) + send(u"B"_s, 2, u"s"_s) + send(u"C"_s, 3, u"s"_s); }
};

} // namespace

class TestFramework : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void deliversAccordingToTheRule_data();
    void deliversAccordingToTheRule();
    void deliversAnswersFromAnotherThread_data() { deliversAccordingToTheRule_data(); }
    void deliversAnswersFromAnotherThread();
    void mostExactRuleApplies();
    void releasesHeldAnswers();
    void pluginMaySendOrBeDeletedInsideADelivery_data();
    void pluginMaySendOrBeDeletedInsideADelivery();
    void destructorDropsPendingAnswers();
    void copyHasItsOwnData();
    void copiesThousandsOfLevels();
};

void TestFramework::deliversAccordingToTheRule_data()
{
    QTest::addColumn<Delivery>("delivery");
    QTest::addColumn<int>("accepted");
    QTest::addColumn<QString>("executed");
    QTest::addColumn<QString>("inside");
    QTest::addColumn<QString>("later");
    const auto row = [](const char *name, const Delivery &delivery, const QString &executed,
                        const QString &inside, const QString &later, int accepted = 3) {
        QTest::newRow(name) << delivery << accepted << executed << inside << later;
    };
    const QString executed = u"ABC"_s;
    const QString all = u"A=[1]/0@ B=[2]/0@s C=[3]/0@s"_s;
    const QString twice = u"A=[1]/0@ A=[1]/0@ B=[2]/0@s B=[2]/0@s C=[3]/0@s C=[3]/0@s"_s;
    const QString failed = u"A=/-9@ B=/-9@s C=/-9@s"_s;
    row("default", {}, executed, {}, all);
    row("delayed", Delivery::delayed(1), executed, {}, all);
    row("immediate", Delivery::immediate(), executed, all, all);
    row("immediate twice", Delivery::immediate().times(2), executed, twice, twice);
    row("twice", Delivery::twice(), executed, {}, twice);
    row("reversed", Delivery::reversed(), executed, {}, u"C=[3]/0@s B=[2]/0@s A=[1]/0@"_s);
    row("held", Delivery::held(), executed, {}, {});
    row("never", Delivery::never(), executed, {}, {});
    row("refused", Delivery::rejected(), {}, {}, {}, 0);
    row("failed", Delivery::failed(u"-9"_s), {}, {}, failed);
    row("failed with an empty code", Delivery::failed({}), {}, {}, u"A=/@ B=/@s C=/@s"_s);
    row("failed at once", Delivery::immediate().failing(u"-9"_s), {}, failed, failed);
    row("wrong payload", Delivery::wrongPayload(7), executed, {}, u"A=7/0@ B=7/0@s C=7/0@s"_s);
}

void TestFramework::deliversAccordingToTheRule()
{
    QFETCH(const Delivery, delivery);
    Client client;
    client.framework.rules().setDefault(delivery);
    QTEST(client.sendThree(), "accepted");
    QCOMPARE(client.framework.sent().size(), 3);
    QCOMPARE(client.framework.sent().constFirst().accepted,
             delivery.when != Delivery::When::Rejected);
    QTEST(client.server.executed, "executed");
    QTEST(client.plugin->text(), "inside");
    QCoreApplication::processEvents();
    QFETCH(const QString, later);
    QVERIFY2(QTest::qWaitFor([&] { return client.plugin->text() == later; }),
             qPrintable(client.plugin->text()));
}

void TestFramework::deliversAnswersFromAnotherThread()
{
    QFETCH(const Delivery, delivery);
    QFETCH(const QString, later);
    ThreadedServer threaded;
    Client client;
    client.framework.setAsyncServer(&threaded);
    client.framework.rules().setDefault(delivery);
    QTEST(client.sendThree(), "accepted");
    // The framework creates failed answers itself, without the server.
    QCoreApplication::processEvents();
    QCOMPARE(client.plugin->text(), delivery.failureCode ? later : QString());
    threaded.answerAll();
    QTEST(threaded.server.executed, "executed");
    QVERIFY(client.server.executed.isEmpty());
    QTRY_COMPARE(client.plugin->text(), later);
    QTRY_COMPARE(client.framework.held().size(), delivery.when == Delivery::When::Held ? 3 : 0);
}

void TestFramework::mostExactRuleApplies()
{
    Client client;
    DeliveryRules &rules = client.framework.rules();
    const auto answers = [](const QString &text) { return Delivery::immediate().replacing(text); };
    rules.setDefault(answers(u"default"_s));
    rules.setForStation(u"s"_s, answers(u"station"_s));
    rules.setForCommand(u"A"_s, answers(u"command"_s));
    rules.setFor(u"t"_s, u"A"_s, answers(u"both"_s));
    client.send(u"B"_s);
    client.send(u"B"_s, {}, u"s"_s);
    client.send(u"A"_s, {}, u"s"_s);
    client.send(u"A"_s, {}, u"t"_s);
    rules.reset();
    client.send(u"A"_s);
    client.framework.sendEvent(u"E"_s, u"data"_s, u"s"_s);
    QCOMPARE(client.plugin->text(),
             u"B=default/0@ B=station/0@s A=command/0@s A=both/0@t E!data@s"_s);
}

void TestFramework::releasesHeldAnswers()
{
    Client client;
    Framework &framework = client.framework;
    framework.rules().setDefault(Delivery::held());
    client.sendThree();
    QVERIFY(!framework.release(3) && !framework.release(-1) && framework.release(1));
    framework.releaseAll();
    QCOMPARE(client.plugin->text(), u"B=[2]/0@s A=[1]/0@ C=[3]/0@s"_s);
    client.plugin->log.clear();
    client.sendThree();
    QCOMPARE(framework.held().size(), 3);
    framework.releaseInOrder({2, 0, 2});
    QCOMPARE(client.plugin->text(), u"C=[3]/0@s A=[1]/0@ C=[3]/0@s"_s);
    QVERIFY(framework.held().isEmpty());
}

void TestFramework::pluginMaySendOrBeDeletedInsideADelivery_data()
{
    QTest::addColumn<Delivery>("delivery");
    QTest::newRow("queued") << Delivery::queued();
    QTest::newRow("inside") << Delivery::immediate();
    QTest::newRow("held") << Delivery::held();
    QTest::newRow("reversed") << Delivery::reversed();
}

void TestFramework::pluginMaySendOrBeDeletedInsideADelivery()
{
    QFETCH(const Delivery, delivery);
    Client client;
    client.framework.rules().setDefault(delivery.times(2));
    int deliveries = 0;
    client.plugin->onDelivery = [&] {
        ++deliveries;
        if (deliveries < 5)
            client.send(u"B"_s, deliveries);
        else
            client.plugin.reset();
    };
    client.send(u"A"_s);
    QCoreApplication::processEvents();
    while (!client.framework.held().isEmpty())
        client.framework.releaseAll();
    QCoreApplication::processEvents();
    client.framework.sendEvent(u"E"_s, {}, {});
    QCOMPARE(deliveries, 5);
}

void TestFramework::destructorDropsPendingAnswers()
{
    Plugin plugin;
    EchoServer server;
    ThreadedServer threaded;
    {
        Framework framework;
        framework.addPlugin(pluginId(), &plugin);
        framework.setServer(&server);
        for (const Delivery &delivery :
             {Delivery::queued(), Delivery::delayed(1), Delivery::held(), Delivery::reversed()}) {
            framework.rules().setDefault(delivery);
            framework.SendCommand(nullptr, pluginId(), u"A"_s, {}, nullptr, false, {});
        }
        QCOMPARE(server.executed, u"AAAA"_s);
        framework.setAsyncServer(&threaded);
        for (int i = 0; i < 2; ++i) {
            framework.SendCommand(nullptr, pluginId(), u"A"_s, {}, nullptr, false, {});
            if (i == 0)
                threaded.answerAll(); // posted, not delivered; the second answer comes too late
        }
    }
    threaded.answerAll();
    // This timer fires after all posted calls and after the delayed answer.
    bool isOver = false;
    QTimer::singleShot(2, this, [&isOver] { isOver = true; });
    QVERIFY(QTest::qWaitFor([&] { return isOver; }));
    QVERIFY(plugin.log.isEmpty());
}

void TestFramework::copyHasItsOwnData()
{
    const QString text = u"text"_s;
    const QVariant values[] = {
        {},
        qint64(1) << 40,
        4000000000U,
        text,
        u""_s,
        QString(),
        QByteArray("by\0tes", 6),
        QByteArray(""),
        QByteArray(),
        QStringList{text, QString(), u""_s},
        QVariantMap(),
        QVariantList(),
        QVariantMap{{text, text}, {QString(), QVariant()}},
        QVariantHash{{text, 1.5}},
        QVariantMap{{text, QVariantList{QVariantMap{{text, QVariantList{1, text}}}}}}};
    for (const QVariant &value : values) {
        const QVariant copy = deepCopy(value);
        QCOMPARE(copy.typeId(), value.typeId());
        QCOMPARE(copy, value);
        QCOMPARE(copy.isNull(), value.isNull());
        QCOMPARE(copy.toString().isNull(), value.toString().isNull());
    }
    QVERIFY(deepCopy(QStringList{QString()}).toStringList().constFirst().isNull());
    const QMap<QString, QVariant> map{{text, text}};
    const QVariantMap copy = deepCopy(map).toMap();
    QVERIFY(copy.firstKey().constData() != text.constData());
    QVERIFY(copy.first().toString().constData() != text.constData());
}

void TestFramework::copiesThousandsOfLevels()
{
    constexpr int Depth = 5000;
    QVariant value = u"bottom"_s;
    for (int level = 0; level < Depth; ++level)
        value = QVariantList{QVariantMap{{u"k"_s, value}}};
    QVariant copy = deepCopy(value);
    for (int level = 0; level < Depth; ++level)
        copy = copy.toList().value(0).toMap().value(u"k"_s);
    QCOMPARE(copy, QVariant(u"bottom"_s));
}

QTEST_GUILESS_MAIN(TestFramework)
#include "tst_framework.moc"
