#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "inspect/query/QueryField.h"

namespace KVR
{

class Scene;
struct QueryTree;

/// A text that is no expression, or one that a scene is too large for. What it says is a sentence without its full
/// stop; for a text it names the column.
class QueryError : public std::runtime_error
{
public:
    QueryError(std::string const& sentence, std::size_t column) : runtime_error(sentence), m_column(column) {}

    /// The character at which the text goes wrong, from 1: one behind the last where it ends too early. 0 for what is
    /// no mistake in the text.
    std::size_t Column() const noexcept { return m_column; }

private:
    std::size_t m_column;
};

/// An expression that asks for occurrences of components: part[name~"M6*" and box.max<20mm]. docs/query.md has its
/// grammar. Copies share what was parsed.
class Query
{
public:
    /// The most bytes that an expression may have.
    static constexpr std::size_t kMostBytes = 10'000;
    /// So many parentheses and brackets may stand in one another.
    static constexpr std::size_t kMostNesting = 50;
    /// The most steps in all its paths, as in "assembly > part", which has two.
    static constexpr std::size_t kMostSteps = 64;
    /// The most occurrences that a scene may have for it to be asked.
    static constexpr unsigned long long kMostOccurrences = 100'000'000;

    /// Throws QueryError for a text that is no expression.
    explicit Query(std::string_view text);

    /// Whether a text where a name could stand, too, begins as an expression does: with a kind or "*", and then ">",
    /// "//", or "[" with a field, or any word and a relation, behind it; or with such a bracket alone. All else is a
    /// name, "part" and "part[1]" included.
    static bool IsExpression(std::string_view text);

    /// The occurrences that the expression asks for, ascending: their places in an OccurrenceWalk over the scene, in
    /// which the root's is 0 and hidden ones count. Throws QueryError for a scene that has too many, and what the
    /// producer throws.
    std::vector<std::size_t> Find(Scene const& scene) const;

    /// What of a scene has to be read to ask it.
    QuerySource Source() const;

    /// What was parsed.
    QueryTree const& Tree() const noexcept { return *m_tree; }

private:
    std::shared_ptr<QueryTree const> m_tree;
};

/// The lines under a complaint that show where an expression goes wrong: the text, or what is around the column, and a
/// caret. Without a line end behind them; empty for column 0. Control characters are blanks.
std::string CaretLines(std::string_view text, std::size_t column);

}  // namespace KVR
