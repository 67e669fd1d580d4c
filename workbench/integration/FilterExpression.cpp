#include "FilterExpression.h"

#include <QtCore/QStringList>

#include <algorithm>

namespace workbench {

/// A recursive-descent parser; stops at the first error.
class FilterParser
{
public:
    using Node = FilterExpression::Node;
    using Kind = FilterExpression::Kind;

    FilterParser(const QString &text, const QStringList &flags,
                 const FilterExpression::Check &check)
        : m_text(text)
        , m_flags(flags)
        , m_check(check)
    {
    }

    Node parse()
    {
        skipSpace();
        if (atEnd())
            return {};
        Node node = parseOr(0);
        if (!failed() && !atEnd())
            fail(m_position, QStringLiteral("this bracket was not opened"));
        return node;
    }

    QString error() const { return m_error; }

private:
    static constexpr int MaxDepth = 100; ///< nested brackets and "not"; bounds the recursion

    bool failed() const { return !m_error.isEmpty(); }
    bool atEnd() const { return m_position == m_text.size(); }
    QChar next() const { return m_text.at(m_position); }

    void fail(qsizetype position, const QString &message)
    {
        if (!failed())
            m_error = QStringLiteral("character %1: %2").arg(position + 1).arg(message);
    }

    void skipSpace()
    {
        while (!atEnd() && next().isSpace())
            ++m_position;
    }

    /// Returns the next word without consuming it.
    QString peekWord(const QString &ends = QStringLiteral("()\":")) const
    {
        qsizetype end = m_position;
        while (end < m_text.size() && !m_text.at(end).isSpace() && !ends.contains(m_text.at(end)))
            ++end;
        return m_text.mid(m_position, end - m_position);
    }

    /// Consumes the next word if it is the wanted one and not a field with a colon.
    bool skipWord(const char *wanted)
    {
        const QString found = peekWord();
        const qsizetype end = m_position + found.size();
        const bool ends = end == m_text.size() || m_text.at(end) != QLatin1Char(':');
        if (!ends || found.compare(QLatin1String(wanted), Qt::CaseInsensitive) != 0)
            return false;
        m_position = end;
        skipSpace();
        return true;
    }

    Node parseOr(int depth)
    {
        Node node{Kind::Or, {}, {parseAnd(depth)}};
        while (!failed() && skipWord("or"))
            node.parts.push_back(parseAnd(depth));
        return node;
    }

    Node parseAnd(int depth)
    {
        Node node{Kind::And, {}, {parseTerm(depth)}};
        while (!failed() && !atEnd() && next() != QLatin1Char(')') && !isWord("or")) {
            skipWord("and");
            node.parts.push_back(parseTerm(depth));
        }
        return node;
    }

    bool isWord(const char *wanted)
    {
        const qsizetype before = m_position;
        const bool found = skipWord(wanted);
        m_position = before;
        return found;
    }

    Node parseTerm(int depth)
    {
        if (depth > MaxDepth)
            fail(m_position, QStringLiteral("too many brackets"));
        if (!failed() && skipWord("not"))
            return {Kind::Not, {}, {parseTerm(depth + 1)}};
        const qsizetype begin = m_position;
        if (failed() || atEnd() || next() != QLatin1Char('('))
            return parseCondition();
        ++m_position;
        skipSpace();
        Node node = parseOr(depth + 1);
        if (atEnd())
            fail(begin, QStringLiteral("this bracket is not closed"));
        if (!failed())
            ++m_position;
        skipSpace();
        return node;
    }

    Node parseCondition()
    {
        const qsizetype begin = m_position;
        if (failed())
            return {};
        const bool isMark = !atEnd() && (next() == QLatin1Char(')') || next() == QLatin1Char(':'));
        if (atEnd() || isMark || isWord("and") || isWord("or")) {
            fail(begin, QStringLiteral("expected a condition"));
            return {};
        }
        FilterExpression::Condition found{{}, parseValue(peekWord())};
        if (m_text.at(begin) != QLatin1Char('"')) {
            if (!atEnd() && next() == QLatin1Char(':')) {
                ++m_position;
                found = {found.value.toLower(), parseValue(peekWord(QStringLiteral("()\"")))};
            } else if (m_flags.contains(found.value.toLower())) {
                found = {found.value.toLower(), {}};
            }
        }
        const QString wrong = m_check(found);
        if (!wrong.isEmpty())
            fail(begin, wrong);
        skipSpace();
        return {Kind::Condition, found, {}};
    }

    /// Consumes a value: a text in quotation marks, or the word @p found.
    QString parseValue(const QString &found)
    {
        if (atEnd() || next() != QLatin1Char('"')) {
            m_position += found.size();
            return found;
        }
        const qsizetype begin = m_position + 1;
        const qsizetype end = m_text.indexOf(QLatin1Char('"'), begin);
        if (end < 0) {
            fail(m_position, QStringLiteral("this quotation mark is not closed"));
            return {};
        }
        m_position = end + 1;
        return m_text.mid(begin, end - begin);
    }

    const QString &m_text;
    const QStringList &m_flags;
    const FilterExpression::Check &m_check;
    qsizetype m_position = 0;
    QString m_error;
};

std::optional<FilterExpression> FilterExpression::parse(const QString &text,
                                                        const QStringList &flags,
                                                        const Check &check, QString *error)
{
    FilterParser parser(text, flags, check);
    FilterExpression expression;
    expression.m_root = parser.parse();
    *error = parser.error();
    return error->isEmpty() ? std::optional(expression) : std::nullopt;
}

bool FilterExpression::matches(const Predicate &predicate) const
{
    return matches(m_root, predicate);
}

bool FilterExpression::matches(const Node &node, const Predicate &predicate)
{
    const auto matching = [&](const Node &part) { return matches(part, predicate); };
    switch (node.kind) {
    case Kind::Condition:
        return predicate(node.condition);
    case Kind::Not:
        return !matching(node.parts.front());
    case Kind::And:
        return std::all_of(node.parts.cbegin(), node.parts.cend(), matching);
    case Kind::Or:
        return std::any_of(node.parts.cbegin(), node.parts.cend(), matching);
    }
    return false;
}

} // namespace workbench
