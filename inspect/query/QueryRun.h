#pragma once

#include <cstdint>
#include <vector>

#include "inspect/query/OccurrenceValues.h"
#include "inspect/query/Query.h"
#include "inspect/query/QueryTree.h"

namespace KVR
{

/// A walk over the occurrences of a scene that an expression asks for. Scene and query must outlive it.
class QueryRun
{
public:
    /// Throws QueryError for a scene with more occurrences than may be asked.
    QueryRun(Query const& query, Scene const& scene);

    /// Goes to the next occurrence that is asked for; false when there are no more.
    bool Next();
    /// Where it is.
    OccurrenceValues& Values() noexcept { return m_values; }

private:
    /// A bit for each step of the tree.
    struct Level
    {
        /// The steps that the occurrence is, with the steps before them where they are to be.
        std::uint64_t here = 0;
        /// Those that it, or an occurrence above it, is.
        std::uint64_t hereOrAbove = 0;
    };

    bool Fits(QueryTree::Step const& step);
    bool Holds(QueryTree::Condition const& condition);
    bool HoldsTest(QueryTree::Condition const& test);
    bool HoldsTest(QueryTree::Condition const& test, SceneProperty const& property) const;

    QueryTree const& m_tree;
    OccurrenceValues m_values;
    std::vector<Level> m_levels;
};

}  // namespace KVR
