#include "DataTable.h"
#include "LoadedPlugin.h"
#include "PluginHarness.h"

#include "PluginBase.h"
#include "logging/LogControl.h"

#include <QtCore/QDir>

using namespace Qt::StringLiterals;
using standin::LogPart;
using standin::LogParts;

namespace logging = standin::logging;

namespace {

LogParts partsOf(const QString &names)
{
    LogParts parts;
    parts.setFlag(LogPart::Handle, names.contains(u"handle"));
    parts.setFlag(LogPart::RegisterModule, names.contains(u"register"));
    parts.setFlag(LogPart::CheckLine, names.contains(u"check"));
    parts.setFlag(LogPart::WriteLine, names.contains(u"write"));
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
        QVERIFY(!isInMemory(TESSALINE_PLUGIN_PATH));
        m_lines.clear();
        logging::reset();
    }

    void registersOnceALoad()
    {
        for (const quint32 number : {1U, 2U, 3U}) {
            const LoadedPlugin loaded;
            complain();
            QCOMPARE(logging::registrations().size(), qsizetype(number));
            QCOMPARE(logging::registrations().constLast().name, QByteArray("Tessaline"));
            QCOMPARE(logging::registrations().constLast().constant, 19);
            QCOMPARE(m_lines.constLast().severityWord, number << 8 | 2U);
        }
        QCOMPARE(logging::calls().getGlobalObject, 3);
        QCOMPARE(logging::calls().withWrongArgument, 0);
        QCOMPARE(logging::calls().withWrongHandle, 0);
    }

    void doesWithoutMissingParts_data()
    {
        addTable({"atLoad", "later", "registered", "checked", "written", "severity"}, uR"(
        nothing         | -        | -        | 1 | 4 | 4 | 258
        handle          | handle   | handle   | 1 | 0 | 0 |
        registration    | register | register | 0 | 4 | 4 | 2
        check           | check    | check    | 1 | 0 | 0 |
        writing         | write    | write    | 1 | 4 | 0 |
        all vanishes    | -        | handle register check write | 1 | 0 | 0 |
        all appears     | handle register check write | -        | 0 | 4 | 4 | 2
        )"_s);
    }
    void doesWithoutMissingParts()
    {
        QFETCH(const QString, atLoad);
        QFETCH(const QString, later);
        QFETCH(const QString, registered);
        QFETCH(const QString, checked);
        QFETCH(const QString, written);
        QFETCH(const QString, severity);

        logging::withhold(partsOf(atLoad));
        const LoadedPlugin loaded;
        logging::withhold(partsOf(later));
        complain();
        QCOMPARE(logging::calls().registerModule, registered.toInt());
        QCOMPARE(logging::calls().checkLine, checked.toInt());
        QCOMPARE(logging::calls().writeLine, written.toInt());
        for (const standin::LogLine &line : std::as_const(m_lines))
            QCOMPARE(line.severityWord, severity.toUInt());
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
            const QString file = QString::fromLatin1(line.file);
            QCOMPARE(file, QDir::toNativeSeparators(file));
            lines.append(QString::fromLatin1(line.module) + u' ' +
                         QDir::fromNativeSeparators(file) +
                         QString::fromLatin1(": " + line.format));
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
