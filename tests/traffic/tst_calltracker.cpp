#include "CallTracker.h"

#include "DataTable.h"

#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using namespace workbench;

namespace {

/// Creates an entry from a word with kind, number of the command and depth, like "send3.1".
TrafficEntry entryOf(const QString &word)
{
    using Kind = TrafficEntry::Kind;
    TrafficEntry entry;
    const QStringList parts = word.split(u'.');
    entry.depth = parts.value(1).toInt();
    const QString verb = parts.constFirst();
    entry.request = verb.last(1).toULongLong();
    entry.accepted = !verb.startsWith(u"rejected"_s);
    entry.kind = verb.startsWith(u"answer"_s)                                   ? Kind::Answered
                 : verb.startsWith(u"send"_s) || verb.startsWith(u"rejected"_s) ? Kind::Sent
                 : verb == u"signal"_s                                          ? Kind::Signal
                 : verb == u"event"_s                                           ? Kind::Event
                                                                                : Kind::Call;
    return entry;
}

} // namespace

/// Tests how entries are assigned to calls.
class TestCallTracker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entriesGetTheNumberOfTheirCall_data()
    {
        addTable({"entries", "calls", "progress", "unanswered"}, uR"(
batch             | call send1.1 send2.1 answer1 answer2 signal.1 | 1 1 1 1 1 1 | 2 of 2 | 0
part of a batch   | call send1.1 send2.1 answer2       | 1 1 1 1     | 1 of 2 | 1
two at once       | call send1.1 call send2.1 answer1 signal.1 answer2 signal.1 | 1 1 2 2 1 1 2 2 | 1 of 1 | 0
from inside       | call send1.1 answer1.1 signal.2    | 1 1 1 1     | 1 of 1 | 0
call from a slot  | call send1.1 answer1 signal.1 call.2 send2.3 signal.1 | 1 1 1 1 2 2 1 | 1 of 1 | 1
answered twice    | call send1.1 answer1 answer1       | 1 1 1 1     | 1 of 1 | 0
rejected           | call rejected1.1 signal.1           | 1 1 1       | 0 of 0 | 0
of itself         | send1 answer1 event signal.1       | 1 1 2 2     | 1 of 1 | 0
unknown command   | answer7 signal.1                   | 1 1         | 0 of 0 | 0
output without    | signal.3                           | 1           | 0 of 0 | 0)"_s);
    }
    void entriesGetTheNumberOfTheirCall()
    {
        QFETCH(const QString, entries);
        CallTracker tracker;
        QStringList calls;
        quint64 sequence = 0;
        for (const QString &word : entries.split(u' ')) {
            TrafficEntry entry = entryOf(word);
            entry.sequence = ++sequence;
            tracker.add(entry);
            calls.append(QString::number(entry.call));
        }
        QTEST(calls.join(u' '), "calls");
        const CallTracker::Call *const first = tracker.call(1);
        QVERIFY(first);
        QTEST(u"%1 of %2"_s.arg(first->answered).arg(first->commands), "progress");
        QCOMPARE(tracker.unanswered(), int(numberIn("unanswered")));
    }

    void forgottenCommandsAreNotCounted()
    {
        CallTracker tracker;
        quint64 sequence = 0;
        for (const char *word : {"call", "send1.1", "call", "send2.1", "answer1", "answer2"}) {
            TrafficEntry entry = entryOf(QLatin1String(word));
            entry.sequence = ++sequence;
            entry.elapsed = qint64(sequence) * 10;
            if (sequence == 5)
                tracker.forgetBefore(3);
            tracker.add(entry);
        }
        QVERIFY(!tracker.call(1) && !tracker.command(1));
        QCOMPARE(tracker.command(2)->took, 20);
        QCOMPARE(tracker.unanswered(), 0);
    }
};

QTEST_APPLESS_MAIN(TestCallTracker)
#include "tst_calltracker.moc"
