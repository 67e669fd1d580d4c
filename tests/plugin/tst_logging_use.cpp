#include "LoadedPlugin.h"

#include "framework/Framework.h"
#include "logging/LogControl.h"
#include "topology/Topology.h"

#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using standin::LogPart;
using standin::LogParts;

namespace logging = standin::logging;

Q_DECLARE_METATYPE(LogParts)

namespace {

const char *const emptyLocation = "Tessaline::addBookmark, Location ID is empty";

/// Makes the plug-in write one line.
void complain(const LoadedPlugin &loaded)
{
    bool sent = true;
    QVERIFY(QMetaObject::invokeMethod(loaded.object(), "addBookmark", Q_RETURN_ARG(bool, sent),
                                      Q_ARG(QString, QString()), Q_ARG(QString, QString()),
                                      Q_ARG(QString, QString()), Q_ARG(qlonglong, 1),
                                      Q_ARG(qlonglong, 2), Q_ARG(QString, QString()),
                                      Q_ARG(QString, QString()), Q_ARG(QString, QString())));
    QVERIFY(!sent);
}

} // namespace

/// How the plug-in uses the host's logging library, whatever that offers.
class TestLoggingUse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void registersOnceALoad();
    void doesWithoutMissingParts_data();
    void doesWithoutMissingParts();
    void writesWhatIsWanted();
    void namesTheSourceOfALine();

private:
    QList<standin::LogLine> m_lines;
};

void TestLoggingUse::init()
{
    QVERIFY(!LoadedPlugin::isInMemory());
    m_lines.clear();
    logging::reset();
    logging::writeTo([this](const standin::LogLine &line) { m_lines.append(line); });
}

void TestLoggingUse::registersOnceALoad()
{
    for (const quint32 number : {1U, 2U, 3U}) {
        m_lines.clear();
        LoadedPlugin loaded(nullptr);
        QCOMPARE(logging::registrations().size(), qsizetype(number));
        QCOMPARE(logging::registrations().constLast().name, QByteArray("Tessaline"));
        QCOMPARE(logging::registrations().constLast().constant, 19);
        complain(loaded);
        delete loaded.object();
        QCOMPARE(m_lines.size(), 1);
        QCOMPARE(m_lines.constFirst().severityWord, number << 8 | 2U);
        QCOMPARE(m_lines.constFirst().text, QByteArray(emptyLocation));
        QVERIFY(loaded.unload());
    }
    QCOMPARE(logging::calls().getGlobalObject, 3);
    QCOMPARE(logging::calls().withWrongHandle, 0);
}

void TestLoggingUse::doesWithoutMissingParts_data()
{
    QTest::addColumn<LogParts>("missingAtLoad");
    QTest::addColumn<LogParts>("missingLater");
    QTest::addColumn<int>("registrations");
    QTest::addColumn<int>("checks");
    QTest::addColumn<QList<quint32>>("severities");

    const LogParts nothing;
    const LogParts all = LogParts(LogPart::Handle) | LogPart::RegisterModule | LogPart::CheckLine |
                         LogPart::WriteLine;
    const auto row = [&](const char *part, LogParts missing, int registrations, int checks,
                         const QList<quint32> &severities) {
        QTest::addRow("no %s", part) << missing << missing << registrations << checks << severities;
    };
    row("part missing", nothing, 1, 1, {0x102});
    row("handle", LogPart::Handle, 1, 0, {});
    row("registration", LogPart::RegisterModule, 0, 1, {2});
    row("check", LogPart::CheckLine, 1, 0, {});
    row("writing", LogPart::WriteLine, 1, 1, {});
    row("part at all", all, 0, 0, {});
    QTest::newRow("everything vanishes") << nothing << all << 1 << 0 << QList<quint32>();
    QTest::newRow("everything appears") << all << nothing << 0 << 1 << QList<quint32>{2};
    QTest::newRow("handle vanishes")
        << nothing << LogParts(LogPart::Handle) << 1 << 0 << QList<quint32>();
    QTest::newRow("registration vanishes")
        << nothing << LogParts(LogPart::RegisterModule) << 1 << 1 << QList<quint32>{0x102};
}

void TestLoggingUse::doesWithoutMissingParts()
{
    QFETCH(const LogParts, missingAtLoad);
    QFETCH(const LogParts, missingLater);
    QFETCH(const int, registrations);
    QFETCH(const int, checks);
    QFETCH(const QList<quint32>, severities);

    logging::withhold(missingAtLoad);
    const LoadedPlugin loaded(nullptr);
    logging::withhold(missingLater);
    complain(loaded);
    QCOMPARE(logging::calls().registerModule, registrations);
    QCOMPARE(logging::calls().checkLine, checks);
    QCOMPARE(logging::calls().writeLine, int(severities.size()));
    QList<quint32> actual;
    for (const standin::LogLine &line : std::as_const(m_lines))
        actual.append(line.severityWord);
    QCOMPARE(actual, severities);
}

void TestLoggingUse::writesWhatIsWanted()
{
    const LoadedPlugin loaded(nullptr);
    for (const bool refused : {true, false, true}) {
        logging::refuseLines(refused);
        complain(loaded);
    }
    QCOMPARE(logging::calls().checkLine, 3);
    QCOMPARE(logging::calls().writeLine, 1);
    QCOMPARE(m_lines.size(), 1);
}

void TestLoggingUse::namesTheSourceOfALine()
{
    standin::Framework framework;
    const LoadedPlugin loaded(&framework);
    PluginBase &plugin = loaded.plugin();
    plugin.CommandProcessor(u"RemoveAllBookmarks"_s, {}, nullptr, u"7"_s, {}, false, {});
    plugin.EventProcessor(u"AddBookmark"_s, 0, 0, 0, {}, {});
    QMetaObject::invokeMethod(loaded.object(), "queryAllBookmarks");
    complain(loaded);
    plugin.CommandProcessor(u"QueryAllBookmars"_s, {}, nullptr, u"0"_s, {}, false, {});

    const QList<QPair<QByteArray, QByteArray>> expected{
        {"src/Tessaline.cpp", "%s, remove bookmark failed: %d"},
        {"src/Tessaline_Local.cpp", "%s, get TopologyPlugin failed"},
        {"src/Tessaline_Local.cpp", "%s, get TopologyPlugin failed"},
        {"src/Tessaline_Req.cpp", "%s, Location ID is empty"},
        {"src/Tessaline_ReqRespHandler.cpp", "%s, request response context is NULL"}};
    QList<QPair<QByteArray, QByteArray>> actual;
    for (const standin::LogLine &line : std::as_const(m_lines)) {
        actual.append({line.file, line.format});
        QVERIFY(line.line > 0);
        QCOMPARE(line.module, QByteArray("Tessaline"));
    }
    QCOMPARE(actual, expected);
    QVERIFY(m_lines.at(1).line != m_lines.at(2).line);
}

QTEST_GUILESS_MAIN(TestLoggingUse)
#include "tst_logging_use.moc"
