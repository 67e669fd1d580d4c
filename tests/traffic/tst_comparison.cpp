#include "Comparer.h"
#include "DataTable.h"
#include "DifferencesModel.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using namespace workbench;

namespace {

/// Three calls and an event, from inside which comes a call; lines 2 to 21 of a file.
const QString Session = u"call:add=a >send:Add@r1#1=a >send:Add@r2#2=a "
                        "answer:Add@r1#1=x >signal:added=a answer:Add@r2#2=x >signal:done "
                        "call:list=q >send:List@r1#3 answer:List@r1#3!0=l1 >signal:listed "
                        "event:changed@r1=e >call:list=q2 >>send:List@r1#4 "
                        "answer:List@r1#4=l2 >signal:listed call:add=b event:tick=t "
                        "call:add=c event:tick=t"_s;

/// Entries as words: depth, kind, name, station, request, code and value.
QList<Recording::Line> linesOf(const QString &words)
{
    static const QRegularExpression form(
        u"(>*)(\\w+):(\\w+)(?:@(\\w+))?(?:#(\\d+))?(?:!(\\d+))?(?:=(\\w+))?"_s);
    QList<Recording::Line> lines;
    for (auto it = form.globalMatch(words); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        TrafficEntry entry;
        entry.depth = int(match.capturedLength(1));
        if (!kindOf(match.captured(2), &entry.kind))
            qFatal("unknown kind in %s", qPrintable(match.captured()));
        entry.name = match.captured(3);
        entry.relayPath = match.captured(4);
        entry.request = match.captured(5).toULongLong();
        entry.code = match.captured(6);
        entry.value = match.captured(7);
        lines.append({int(lines.size()) + 2, entry});
    }
    return lines;
}

} // namespace

/// A comparison reports each difference once, and folds those that only follow from another one.
class TestComparison : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void differencesAreFoldedIntoTheirCause_data()
    {
        // "4+2" is a difference in line 4 with two that follow from it.
        addTable({"before", "after", "differences", "first"}, uR"(
same                | a          | a          |      |
payload             | r2#2=a     | r2#2=b     | 4    | expected payload is 'a', found 'b' in line 4
missing signal      | >signal:done |          | 8    | expected signal done, found nothing
additional command  | >send:List@r1#3 | >send:List@r1#3 >send:Get@r2#9 | 10 | expected nothing else after this line, found send Get to r2 in line 11
additional first    | call:add=a | call:other call:add=a | 1 | expected nothing else after this line, found call other in line 2
code                | #3!0=l1    | #3!4=l1    | 11   | expected code 0, found 4 in line 11
call with its results | =a       | =b         | 2+3  | expected arguments is 'a', found 'b' in line 2
call, and a later one | =a;=l2   | =b;=l3     | 2+3 16 | expected arguments is 'a', found 'b' in line 2
missing call        | call:list=q >send:List@r1#3 answer:List@r1#3!0=l1 >signal:listed | | 9+3 | expected call list, found nothing
additional call     | call:add=b | call:get >send:Get@r1#8 call:add=b answer:Get@r1#8=z | 17+2 | expected nothing else after this line, found call get in line 18
call of an event    | =e;=q2;=l2 | =f;=q3;=l3 | 13+2 | expected payload is 'e', found 'f' in line 13
call inside an event | =q2;=l2   | =q3;=l3    | 14+1 | expected arguments is 'q2', found 'q3' in line 14
order of answers    | answer:Add@r1#1=x >signal:added=a answer:Add@r2#2=x >signal:done | answer:Add@r2#2=x >signal:done answer:Add@r1#1=x >signal:added=a | 5+3 | expected answer Add from r1, found nothing
first of like calls | call:add=b event:tick=t | | 18 19 | expected call add, found nothing)"_s
                                                                  .replace(u'\'', u'"'));
    }
    void differencesAreFoldedIntoTheirCause()
    {
        QFETCH(const QString, before);
        QFETCH(const QString, after);
        const QStringList befores = before.split(u';');
        const QStringList afters = after.split(u';');
        QString changed = Session;
        for (qsizetype i = 0; i < befores.size(); ++i) {
            QVERIFY2(changed.contains(befores.at(i)), qPrintable(befores.at(i)));
            changed.replace(befores.at(i), afters.at(i));
        }
        Comparison comparison;
        comparison.otherFile = u"other"_s;
        const QList<Recording::Line> expected = linesOf(Session);
        compareEntries(expected, linesOf(changed), &comparison);

        QStringList found;
        int followers = 0;
        for (const Difference &difference : comparison.differences) {
            if (difference.cause < 0)
                found.append(difference.followers > 0
                                 ? u"%1+%2"_s.arg(difference.line).arg(difference.followers)
                                 : QString::number(difference.line));
            followers += difference.followers;
        }
        QTEST(found.join(u' '), "differences");
        QCOMPARE(found.size() + followers, comparison.differences.size());
        QTEST(found.isEmpty() ? QString() : comparison.differences.constFirst().text(), "first");
        QCOMPARE(comparison.exitCode(), found.isEmpty() ? 0 : 1);
    }

    void foldedDifferencesCanBeUnfolded()
    {
        Comparison comparison;
        QString changed = Session;
        changed.replace(u"=a"_s, u"=b"_s).replace(u"=l2"_s, u"=l3"_s);
        comparison.otherFile = u"other"_s;
        compareEntries(linesOf(Session), linesOf(changed), &comparison);
        DifferencesModel model;
        const QAbstractItemModelTester tester(&model);
        model.show(comparison.differences);
        const auto lines = [&] {
            QStringList numbers;
            for (int row = 0; row < model.rowCount(); ++row)
                numbers.append(model.index(row).data(DifferencesModel::LineRole).toString());
            return numbers.join(u' ');
        };
        QCOMPARE(lines(), u"2 16"_s);
        model.toggle(1); // nothing follows from it
        model.toggle(0);
        QCOMPARE(lines(), u"2 3 4 6 16"_s);
        model.toggle(0);
        QCOMPARE(lines(), u"2 16"_s);
    }
};

QTEST_GUILESS_MAIN(TestComparison)
#include "tst_comparison.moc"
