#pragma once

#include <QtCore/QString>

#include <functional>
#include <optional>
#include <vector>

namespace workbench {

/// A filter that a user types: conditions combined with "and", "or", "not" and brackets; "and" is
/// optional. A condition is a text or a field with a value, as name:add or name:"two words". A text
/// with a colon, a space or a bracket needs quotation marks.
class FilterExpression
{
public:
    struct Condition
    {
        QString field; ///< lower case; empty for a text
        QString value; ///< empty for a flag
    };

    /// @return an error message for an invalid condition, or an empty text
    using Check = std::function<QString(const Condition &)>;
    using Predicate = std::function<bool(const Condition &)>;

    /// Parses an expression.
    /// @param flags fields without a value
    /// @param check called for each condition
    /// @param error set to an error message with the number of the first wrong character, from 1;
    ///              empty on success
    /// @return nullopt for an invalid expression
    static std::optional<FilterExpression> parse(const QString &text, const QStringList &flags,
                                                 const Check &check, QString *error);

    /// @param predicate returns true if a condition is met
    /// @return true if the expression is met; always true for an empty one
    bool matches(const Predicate &predicate) const;

private:
    friend class FilterParser;

    enum class Kind { Condition, Not, And, Or };
    struct Node
    {
        Kind kind = Kind::And;
        Condition condition;
        std::vector<Node> parts;
    };

    static bool matches(const Node &node, const Predicate &predicate);

    Node m_root;
};

} // namespace workbench
