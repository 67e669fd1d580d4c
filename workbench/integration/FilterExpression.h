#pragma once

#include <QtCore/QString>

#include <functional>
#include <optional>
#include <vector>

namespace workbench {

/// Conditions that are combined with "and", "or", "not" and brackets; "and" may be left out. A
/// condition is a text, or a field with a value: name:add or name:"two words". Texts with a colon,
/// a space or a bracket stand in quotation marks.
class FilterExpression
{
public:
    struct Condition
    {
        QString field; ///< empty: a text
        QString value; ///< empty for a field without a value, too
    };

    /// @return what is wrong with a condition, or an empty text
    using Check = std::function<QString(const Condition &)>;
    using Holds = std::function<bool(const Condition &)>;

    /// @param flags words that are fields without a value
    /// @param error the number of the first wrong character, from 1, and what is wrong there
    static std::optional<FilterExpression> parse(const QString &text, const QStringList &flags,
                                                 const Check &check, QString *error);

    /// An empty expression matches everything.
    bool matches(const Holds &holds) const;

private:
    friend class FilterParser;

    enum class Kind { Condition, Not, And, Or };
    struct Node
    {
        Kind kind = Kind::And;
        Condition condition;
        std::vector<Node> parts;
    };

    static bool matches(const Node &node, const Holds &holds);

    Node m_root;
};

} // namespace workbench
