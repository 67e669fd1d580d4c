#include "PluginConsole.h"

#include "DataTable.h"

#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using workbench::PluginConsole;

/// An object with overloads and types like the plug-in's.
class Target : public QObject
{
    Q_OBJECT

public:
    QVariantList got;

    Q_INVOKABLE bool take(const QString &text, qint64 time, uchar count, bool on)
    {
        got = {text, time, count, on};
        Q_EMIT taken(text, on);
        return on;
    }
    Q_INVOKABLE QVariantList turn(const QVariantList &list, const QVariantMap &map)
    {
        got = {list, map};
        return {map, list};
    }
    Q_INVOKABLE void pass() { got = {u"passed"_s}; }

Q_SIGNALS:
    void taken(const QString &text, bool on);
};

/// Tests calls with typed arguments.
class TestConsole : public QObject
{
    Q_OBJECT

    Target m_target;
    PluginConsole m_console;

    QVariantMap call(const QString &name, const QStringList &texts)
    {
        const QVariantList methods = m_console.methods();
        for (const QVariant &method : methods) {
            if (method.toMap().value(u"name"_s) == name)
                return m_console.call(method.toMap().value(u"index"_s).toInt(), texts);
        }
        return {};
    }

private Q_SLOTS:
    void initTestCase() { m_console.setPlugin(&m_target); }

    void methodsHaveNamesAndTypesOfParameters()
    {
        QStringList signatures;
        const QVariantList methods = m_console.methods();
        for (const QVariant &method : methods)
            signatures.append(method.toMap().value(u"signature"_s).toString());
        QCOMPARE(signatures,
                 (QStringList{u"bool take(QString text, qlonglong time, uchar count, "
                              "bool on)"_s,
                              u"QVariantList turn(QVariantList list, QVariantMap map)"_s,
                              u"void pass()"_s}));
    }

    void argumentsHaveTheTypesOfTheParameters()
    {
        QCOMPARE(call(u"take"_s, {QString(), u"-9007199254740993"_s, u"255"_s, u"true"_s}),
                 (QVariantMap{{u"result"_s, u"true"_s}}));
        QCOMPARE(m_target.got, (QVariantList{QString(), -9007199254740993LL,
                                             QVariant::fromValue(uchar(255)), true}));
        QVERIFY(!m_target.got.constFirst().toString().isNull());
        const QVariantMap turned = call(u"turn"_s, {u"[1, \"a\"]"_s, u"{\"b\": [true]}"_s});
        QCOMPARE(turned.value(u"result"_s).toString(), u"[{b: [true]}, [1, \"a\"]]"_s);
        QCOMPARE(call(u"pass"_s, {}).value(u"result"_s).toString(), u"called"_s);
        QCOMPARE(m_target.got, QVariantList{u"passed"_s});
    }

    void unusableArgumentIsNamedAndNothingCalled_data()
    {
        addTable({"name", "texts", "parameter", "error"}, uR"(
no number | take | a;soon;1;true | 1 | time: expected a whole number
too large | take | a;1;256;true  | 2 | from 0 to 255, found '256'
negative  | take | a;1;-1;true   | 2 | from 0 to 255
fraction  | take | a;1.5;1;true  | 1 | time: expected
no bool   | take | a;1;1;yes     | 3 | on: expected true or false
missing   | take | a             | 1 | time: expected
map       | turn | {};{}         | 0 | list: expected a list as JSON
broken    | turn | [];{'a':      | 1 | character 5)"_s.replace(u'\'', u'"'));
    }
    void unusableArgumentIsNamedAndNothingCalled()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, texts);
        QFETCH(const QString, error);
        m_target.got.clear();
        const QVariantMap outcome = call(name, texts.split(u';'));
        QCOMPARE(outcome.value(u"parameter"_s).toInt(), int(numberIn("parameter")));
        QVERIFY2(outcome.value(u"error"_s).toString().contains(error),
                 qPrintable(outcome.value(u"error"_s).toString()));
        QVERIFY(m_target.got.isEmpty());
    }

    void signalsAreCounted()
    {
        m_console.resetCounts();
        Q_EMIT m_target.taken(u"first"_s, true);
        Q_EMIT m_target.taken(u"last"_s, false);
        const QVariantMap expected{{u"count"_s, 2}, {u"arguments"_s, u"[\"last\", false]"_s}};
        QCOMPARE(m_console.emitted(), (QVariantMap{{u"taken"_s, expected}}));
        QCOMPARE(m_console.signalNames(), QStringList{u"taken"_s});
    }
};

QTEST_MAIN(TestConsole)
#include "tst_console.moc"
