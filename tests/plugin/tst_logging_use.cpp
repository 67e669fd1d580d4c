#include "DataTable.h"
#include "LoadedPlugin.h"
#include "PluginHarness.h"

#include "PluginBase.h"
#include "logging/LogControl.h"

using namespace Qt::StringLiterals;
using standin::LogPart;
using standin::LogParts;

namespace logging = standin::logging;

namespace {

/// The parts by their initials: handle, registration, check, writing.
LogParts partsOf(const QString &initials)
{
    LogParts parts;
    parts.setFlag(LogPart::Handle, initials.contains(u'h'));
    parts.setFlag(LogPart::RegisterModule, initials.contains(u'r'));
    parts.setFlag(LogPart::CheckLine, initials.contains(u'c'));
    parts.setFlag(LogPart::WriteLine, initials.contains(u'w'));
    return parts;
}

} // namespace

/// How the plug-in uses the host's logging library, whatever that offers.
class TestLoggingUse : public QObject
{
    Q_OBJECT

    QList<standin::LogLine> m_lines;

    /// Makes the plug-in write a line from each of its sources.
    void complain()
    {
        PluginHarness harness;
        logging::writeTo([this](const standin::LogLine &line) { m_lines.append(line); });
        harness.answer(u"RemoveAllBookmarks"_s, {}, {}, nullptr, u"7"_s);
        harness.framework.removePlugin(standin::Topology::pluginID());
        harness.call<bool>("queryAllBookmarks");
        harness.framework.rules().setDefault(standin::Delivery::refused());
        harness.call<bool>("updateBookmark", QString());
        harness.answer(u"QueryAllBookmars"_s, {});
    }

private Q_SLOTS:
    void init()
    {
        QVERIFY(!LoadedPlugin::isInMemory(TESSALINE_PLUGIN_PATH));
        m_lines.clear();
        logging::reset();
    }

    void registersOnceALoad()
    {
        for (const quint32 number : {1U, 2U, 3U}) {
            const LoadedPlugin loaded;
            complain();
            complain();
            QCOMPARE(logging::registrations().size(), qsizetype(number));
            QCOMPARE(logging::registrations().constLast().name, QByteArray("Tessaline"));
            QCOMPARE(logging::registrations().constLast().constant, 19);
            QCOMPARE(m_lines.constLast().severityWord, number << 8 | 2U);
        }
        QCOMPARE(logging::calls().getGlobalObject, 3);
        QCOMPARE(logging::calls().withWrongHandle, 0);
    }

    void doesWithoutMissingParts_data()
    {
        addTable({"missingAtLoad", "missingLater", "calls", "severity"}, uR"(
            nothing missing | -    | -    | 1 registered, 4 checked, 4 written | 102
            handle          | h    | h    | 1 registered, 0 checked, 0 written | -
            registration    | r    | r    | 0 registered, 4 checked, 4 written | 2
            check           | c    | c    | 1 registered, 0 checked, 0 written | -
            writing         | w    | w    | 1 registered, 4 checked, 0 written | -
            everything      | hrcw | hrcw | 0 registered, 0 checked, 0 written | -
            all vanishes    | -    | hrcw | 1 registered, 0 checked, 0 written | -
            all appears     | hrcw | -    | 0 registered, 4 checked, 4 written | 2
        )"_s);
    }
    void doesWithoutMissingParts()
    {
        QFETCH(const QString, missingAtLoad);
        QFETCH(const QString, missingLater);
        QFETCH(const QString, calls);
        QFETCH(const QString, severity);

        logging::withhold(partsOf(missingAtLoad));
        const LoadedPlugin loaded;
        logging::withhold(partsOf(missingLater));
        complain();
        const standin::LogCalls made = logging::calls();
        QCOMPARE(u"%1 registered, %2 checked, %3 written"_s.arg(made.registerModule)
                     .arg(made.checkLine)
                     .arg(made.writeLine),
                 calls);
        for (const standin::LogLine &line : std::as_const(m_lines))
            QCOMPARE(QString::number(line.severityWord, 16), severity);
    }

    void writesWhatIsWanted()
    {
        const LoadedPlugin loaded;
        for (const bool refused : {true, false, true}) {
            logging::refuseLines(refused);
            complain();
        }
        QCOMPARE(logging::calls().checkLine, 3 * 4);
        QStringList lines;
        for (const standin::LogLine &line : std::as_const(m_lines)) {
            QVERIFY(line.line > 0);
            lines.append(QString::fromLatin1(line.module + ' ' + line.file + ": " + line.format));
        }
        QCOMPARE(lines,
                 QStringList({u"Tessaline src/Tessaline.cpp: %s, remove bookmark failed: %d"_s,
                              u"Tessaline src/Tessaline_Local.cpp: %s, get TopologyPlugin failed"_s,
                              u"Tessaline src/Tessaline_Req.cpp: %s, send command failed"_s,
                              u"Tessaline src/Tessaline_ReqRespHandler.cpp: "
                              "%s, request response context is NULL"_s}));
    }
};

QTEST_GUILESS_MAIN(TestLoggingUse)
#include "tst_logging_use.moc"
