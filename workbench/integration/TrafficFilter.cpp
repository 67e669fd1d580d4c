// The conditions of the traffic's filter.
#include "PayloadText.h"
#include "TrafficModel.h"

#include <QtCore/QSet>

#include <algorithm>

namespace workbench {

namespace {

using Kind = TrafficEntry::Kind;
using Condition = FilterExpression::Condition;

const QStringList &flagNames()
{
    static const QStringList names = {QStringLiteral("failed"), QStringLiteral("unanswered")};
    return names;
}

const QStringList &fieldNames()
{
    static const QStringList names = {QStringLiteral("kind"),    QStringLiteral("name"),
                                      QStringLiteral("station"), QStringLiteral("code"),
                                      QStringLiteral("call"),    QStringLiteral("slower"),
                                      QStringLiteral("text")};
    return names;
}

/// @return an error message for an invalid condition, or an empty text
QString check(const Condition &condition)
{
    const QString &field = condition.field;
    const QString &value = condition.value;
    if (field.isEmpty() || flagNames().contains(field))
        return {};
    if (!fieldNames().contains(field))
        return QStringLiteral("unknown condition \"%1:\"; use one of %2, %3, or put a text with a "
                              "colon in quotation marks")
            .arg(field, fieldNames().join(QLatin1String(":, ")) + QLatin1Char(':'),
                 flagNames().join(QLatin1String(", ")));
    Kind kind{};
    bool isNumber = false;
    value.toLongLong(&isNumber);
    if (field == QLatin1String("kind") && !kindOf(value, &kind))
        return QStringLiteral("expected %1 after \"kind:\"")
            .arg(kindNames().join(QLatin1String(", ")));
    if ((field == QLatin1String("slower") || field == QLatin1String("call")) && !isNumber)
        return QStringLiteral("expected a whole number after \"%1:\"").arg(field);
    return {};
}

bool isEqual(const QString &left, const QString &right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

} // namespace

Searchable::Matcher TrafficModel::matcher(const QString &text, QString *error) const
{
    const auto expression = FilterExpression::parse(text, flagNames(), check, error);
    if (!expression)
        return nullptr;
    return [this, expression = *expression](int row) {
        return expression.matches(
            [&](const Condition &condition) { return matches(row, condition); });
    };
}

bool TrafficModel::matches(int row, const Condition &condition) const
{
    const TrafficEntry &entry = at(row);
    const QString &field = condition.field;
    const QString &value = condition.value;
    if (field == QLatin1String("kind"))
        return nameOf(entry.kind) == value;
    if (field == QLatin1String("name"))
        return entry.name.contains(value, Qt::CaseInsensitive);
    if (field == QLatin1String("station"))
        return isEqual(entry.relayPath, value);
    if (field == QLatin1String("code"))
        return entry.kind == Kind::Answered && entry.code == value;
    if (field == QLatin1String("call"))
        return entry.call == value.toInt();
    if (field == QLatin1String("slower"))
        return tookOf(entry) > value.toLongLong();
    if (field == QLatin1String("failed"))
        return !entry.accepted ||
               (entry.kind == Kind::Answered && entry.code != QLatin1String("0"));
    if (field == QLatin1String("unanswered"))
        return entry.kind == Kind::Sent && entry.accepted && tookOf(entry) < 0;
    return contains(row, value);
}

QStringList TrafficModel::completions(const QString &text) const
{
    constexpr qsizetype MaxCompletions = 8;
    const qsizetype begin =
        std::max(text.lastIndexOf(QLatin1Char(' ')), text.lastIndexOf(QLatin1Char('('))) + 1;
    const QString word = text.mid(begin);
    if (word.isEmpty())
        return {};
    QStringList candidates = flagNames() + QStringList{QStringLiteral("and"), QStringLiteral("or"),
                                                       QStringLiteral("not")};
    for (const QString &field : fieldNames())
        candidates.append(field + QLatin1Char(':'));
    for (const QString &kind : kindNames())
        candidates.append(QLatin1String("kind:") + kind);
    QSet<QString> seen;
    for (const TrafficEntry &entry : m_entries) {
        seen.insert(QLatin1String("name:") + entry.name);
        if (!entry.relayPath.isEmpty())
            seen.insert(QLatin1String("station:") + entry.relayPath);
    }
    QStringList values(seen.cbegin(), seen.cend());
    values.sort();
    QStringList found;
    const QStringList all = candidates + values;
    for (const QString &candidate : all) {
        const bool isValue =
            candidate.contains(QLatin1Char(':')) && !candidate.endsWith(QLatin1Char(':'));
        // Suggest values only after a field, or there would be too many.
        if (candidate.startsWith(word, Qt::CaseInsensitive) && candidate != word &&
            (!isValue || word.contains(QLatin1Char(':'))))
            found.append(text.left(begin) + candidate);
    }
    return found.mid(0, MaxCompletions);
}

} // namespace workbench
