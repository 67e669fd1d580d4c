#include "AddOutcomes.h"
#include "DataTable.h"
#include "Protocol.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using namespace workbench;

namespace {

/// "1,2=b": records of cameras 1 and 2, the second with an identifier; a single one without a comma
/// is no list.
QVariant recordsOf(const QString &text)
{
    QVariantList records;
    for (const QString &part : text.split(u',', Qt::SkipEmptyParts)) {
        QVariantMap record{{protocol::key::CameraID, part.section(u'=', 0, 0)}};
        if (part.contains(u'='))
            record.insert(protocol::key::BookmarkID, part.section(u'=', 1));
        records.append(record);
    }
    return text.contains(u',') ? QVariant(records) : records.value(0);
}

/// Command 1 to station A: "1>A:1,2", or "1!A:1,2" when the host rejects it; its answer
/// "1<A:1=b,2" or "1<A#4" with a result code. A command with an "x" adds nothing.
standin::Traffic trafficOf(const QString &word)
{
    static const QRegularExpression pattern(u"^(x?)([0-9]+)([<>!])([A-Z]?)(?:#([0-9]+)|:(.*))$"_s);
    const QRegularExpressionMatch match = pattern.match(word);
    if (!match.hasMatch())
        qFatal("%s is no traffic", qPrintable(word));
    const QString records = match.captured(6);
    standin::Traffic traffic;
    traffic.kind =
        match.captured(3) == u"<" ? standin::Traffic::Kind::Answered : standin::Traffic::Kind::Sent;
    traffic.sequence = match.captured(2).toULongLong();
    traffic.request = traffic.sequence;
    traffic.name = !match.captured(1).isEmpty() ? protocol::command::DeleteBookmarks
                   : records.contains(u',')     ? protocol::command::AddBookmarks
                                                : protocol::command::AddBookmark;
    traffic.accepted = match.captured(3) != u"!";
    traffic.relayPath = match.captured(4);
    traffic.resultCode = match.captured(5).isEmpty() ? u"0"_s : match.captured(5);
    traffic.value = recordsOf(records);
    return traffic;
}

} // namespace

/// The cameras that stay ticked in the dialog, and the bookmarks that the list frames.
class TestAddOutcomes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outcomes_data()
    {
        // Failures as "key=code", of the commands after the number.
        addTable({"after", "traffic", "failures", "added"}, uR"(
one camera              | 0 | 1>A:1 1<A:1=b                     |               | A/b
many cameras            | 0 | 1>A:1,2 1<A:1=b,2=c               |               | A/b A/c
without an identifier   | 0 | 1>A:1,2 1<A:1=b,2                 | A/2=          | A/b
an empty identifier     | 0 | 1>A:1,2 1<A:1=,2=c                | A/1=          | A/c
left out of the answer  | 0 | 1>A:1,2,3 1<A:3=b,                | A/1= A/2=     | A/b
an answer of nothing    | 0 | 1>A:1 1<A:                        | A/1=          |
the station fails       | 0 | 1>A:1,2 1<A#4                     | A/1=4 A/2=4   |
the host rejects        | 0 | 1!A:1,2                           | A/1= A/2=     |
the connected server    | 0 | 1>:1,2 1<:1=b,2                   | 2=            | /b
one station of two      | 0 | 1>A:1, 2>B:1,2 2<B#7 1<A:1=b,     | B/1=7 B/2=7   | A/b
two fail differently    | 0 | 1>A:1, 2!B:1, 3>C:1, 1<A#4 3<C:1, | A/1=4 B/1= C/1= |
last try adds           | 1 | 1>A:1 1<A#4 2>A:1 2<A:1=b         |               | A/b
last try fails          | 1 | 1>A:1 1<A:1=b 2>A:1 2<A#4         | A/1=4         |
late answer to the first | 1 | 1>A:1 2>B:1 2<B:1=b 1<A#4        |               | B/b
late addition           | 1 | 1>A:1 2>B:1 2<B#4 1<A:1=b         | B/1=4         |
answered twice          | 0 | 1>A:1 1<A:1=b 1<A#4 1<A:1=c       |               | A/b
first answer fails      | 0 | 1>A:1 1<A#4 1<A:1=b               | A/1=4         |
not answered            | 0 | 1>A:1,2                           |               |
never sent              | 0 | 1<A:1=b                           |               |
another command         | 0 | x1!A:1, x2>A:1, x2<A#4            |               |)"_s);
    }
    void outcomes()
    {
        QFETCH(const QString, traffic);
        AddOutcomes outcomes;
        const QStringList words = traffic.split(u' ', Qt::SkipEmptyParts);
        for (const QString &word : words)
            outcomes.noteTraffic(trafficOf(word));
        const auto after = quint64(numberIn("after"));
        QStringList failures;
        const QVariantMap failed = outcomes.failuresAfter(after);
        for (auto it = failed.cbegin(); it != failed.cend(); ++it)
            failures.append(it.key() + u'=' + it->toString());
        QTEST(failures.join(u' '), "failures");
        QTEST(outcomes.addedAfter(after).join(u' '), "added");
    }
};

QTEST_GUILESS_MAIN(TestAddOutcomes)
#include "tst_addoutcomes.moc"
