#pragma once

#include <string_view>
#include <vector>

#include "inspect/query/QueryTree.h"

namespace KVR
{

/// The tree of an expression; throws QueryError for a text that is none.
QueryTree ParseQuery(std::string_view text);

/// What a list of fields names, with "," between them: path,mass,property["Name"]. Throws QueryError for another text.
std::vector<QueryColumn> ParseQueryColumns(std::string_view text);

/// What Query::IsExpression says.
bool BeginsAsQuery(std::string_view text);

}  // namespace KVR
