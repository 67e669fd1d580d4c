#include "CsvExport.h"
#include "CsvImport.h"
#include "Protocol.h"
#include "StationNetwork.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace stations;
using namespace workbench;

/// Returns all bookmarks of a station as display records.
class FakePlugin : public QObject
{
    Q_OBJECT

public:
    QVariantList records;

    Q_INVOKABLE QVariantList getBookmarkListByNodeID(const QString & /*key*/) const
    {
        return records;
    }
};

/// Tests that exported bookmarks can be imported.
class TestCsvExport : public QObject
{
    Q_OBJECT

    using Times = std::pair<qint64, qint64>;

    static QVariantMap recordOf(const Times &times, const QString &text)
    {
        return {{u"cameraID"_s, u"1"_s},
                {u"relayPath"_s, u"A"_s},
                {u"startTimestamp"_s, times.first},
                {u"endTimestamp"_s, times.second},
                {u"description"_s, text},
                {u"creator"_s, text.left(Bookmark::MaxLabelLength)},
                {u"group"_s, text.left(Bookmark::MaxLabelLength)}};
    }

    /// Exports the bookmarks. Returns the error.
    QString save(const QVariantList &records)
    {
        FakePlugin plugin;
        plugin.records = records;
        RecordFinder finder;
        finder.setProperty("plugin", QVariant::fromValue<QObject *>(&plugin));
        return CsvExport::save(m_path, &finder,
                               {{u"startTimestamp"_s, std::numeric_limits<qint64>::min()},
                                {u"endTimestamp"_s, std::numeric_limits<qint64>::max()}});
    }

    /// Returns the records after an import into new stations.
    QVariantList imported() const
    {
        const QTemporaryDir folder;
        QString error;
        const auto network = StationNetwork::open(
            folder.path(), {{u"A"_s, {}, {}, {{u"1"_s, {}}}, {}}, {u"B"_s, {}, {}, {}, {}}},
            &error);
        if (!network)
            qFatal("%s", qPrintable(error));
        const CsvImport::Result result = CsvImport(*network, {}).run(m_path);
        if (!result.error.isEmpty() || !result.messages.isEmpty())
            qWarning("%s", qPrintable(result.error + result.messages.join(u'\n')));
        const QVariantMap answer =
            network->execute(protocol::command::QueryAllBookmarks, QVariantMap(), u"A"_s)
                .result.toMap();
        QVariantList records;
        const QVariantList stored = answer.value(protocol::key::Bookmarks).toList();
        for (const QVariant &one : stored) {
            const QVariantMap map = one.toMap();
            QVariantMap record = recordOf({map.value(protocol::key::StartTimestamp).toLongLong(),
                                           map.value(protocol::key::EndTimestamp).toLongLong()},
                                          map.value(protocol::key::Description).toString());
            record.insert(u"creator"_s, map.value(protocol::key::Creator));
            record.insert(u"group"_s, map.value(protocol::key::Group));
            records.append(record);
        }
        return records;
    }

    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(u"found.csv"_s);

private Q_SLOTS:
    /// All texts in one file, so that one text can't damage the next.
    void importReturnsExportedTexts()
    {
        QVariantList records;
        const QStringList texts{u""_s,
                                u"plain"_s,
                                u"a,b;c\td|e"_s,
                                u"\""_s,
                                u"\"quoted\", and \"\"doubled\"\""_s,
                                u"a quote's end\""_s,
                                u"two\nlines"_s,
                                u"two\r\nlines"_s,
                                u"\r"_s,
                                u"ends with breaks\r\n\n"_s,
                                u"\nbegins with one"_s,
                                u" outer spaces "_s,
                                u"\u00a0"_s,
                                u"line\u2028separator"_s,
                                u"a mark\ufeff"_s,
                                u"\U0001f6a8 caf\u00e9 cafe\u0301 \u05d0\u05d1"_s,
                                u"=1+1"_s,
                                u"+49 30"_s,
                                u"-1"_s,
                                u"@camera"_s,
                                u"#comment"_s,
                                u"'quoted'"_s,
                                u"back\\slash\\"_s,
                                u"camera,start,end"_s,
                                u"0x1F"_s,
                                u"007"_s,
                                u"last\nlong,\""_s.repeated(5000)};
        for (qsizetype i = 0; i < texts.size(); ++i)
            records.append(recordOf({i, i + 1}, texts.at(i)));
        QCOMPARE(save(records), QString());
        QCOMPARE(imported(), records);
    }

    /// ISO 8601 has no years of five digits.
    void importReturnsExportedTimes()
    {
        constexpr qint64 EndOf9999 = 253'402'300'799'999;
        constexpr qint64 Latest = std::numeric_limits<qint64>::max();
        QVariantList records;
        for (const auto &[start, end] : {Times(0, 0),
                                         {1, 999},
                                         {1774751400000, 1774751400001},
                                         {EndOf9999, EndOf9999 + 1},
                                         {EndOf9999 + 1, Latest},
                                         {Latest, Latest}})
            records.append(recordOf({start, end}, u"x"_s));
        QCOMPARE(save(records), QString());
        QCOMPARE(imported(), records);
    }

    void fileIsReplacedOnlyAsAWhole()
    {
        const QVariantList records{recordOf({1, 2}, u"x"_s)};
        QCOMPARE(save(records), QString());
        QCOMPARE(save({}), QString());
        QCOMPARE(imported(), QVariantList());
        QCOMPARE(save(records), QString());
        QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files), QStringList{u"found.csv"_s});
    }

    void errorNamesTheUnusablePath()
    {
        FakePlugin plugin;
        RecordFinder finder;
        finder.setProperty("plugin", QVariant::fromValue<QObject *>(&plugin));
        for (const QString &path : {m_folder.path(), m_folder.filePath(u"none/x.csv"_s)}) {
            const QString error = CsvExport::save(path, &finder, {});
            QVERIFY2(error.startsWith(QDir::toNativeSeparators(path) + u": "_s), qPrintable(error));
            QVERIFY(error.size() > path.size() + 2);
        }
        QVERIFY(!QDir(m_folder.filePath(u"none"_s)).exists());
    }
};

QTEST_GUILESS_MAIN(TestCsvExport)
#include "tst_csvexport.moc"
