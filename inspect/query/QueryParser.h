#pragma once

#include <string_view>

#include "inspect/query/QueryTree.h"

namespace KVR
{

/// The tree of an expression; throws QueryError for a text that is none.
QueryTree ParseQuery(std::string_view text);

/// What Query::IsExpression says.
bool BeginsAsQuery(std::string_view text);

}  // namespace KVR
