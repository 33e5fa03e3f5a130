#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "describe/Answer.h"
#include "scene/Transform.h"

namespace KVR
{

// Looks into answers that are compared. Answers by reference belong to what they were found in.

/// The member of that name; null for none, and of what has no members.
Answer const& MemberOf(Answer const& answer, std::string_view name);

/// Of a list of texts what another list has as well, in the order of the first.
Answer Common(Answer const& list, Answer const& other);

/// The records of a list by their member `key`, with a number behind it where several have the same.
std::map<std::string, Answer const*> ByKey(Answer const& list, std::string_view key);

/// What a record says beside its key, its own id, class and type; where that is one value, the value. Null for none.
Answer RestOf(Answer const* record, std::string_view key);

/// Whether it is true; false for what is no truth.
bool IsTrue(Answer const& answer);

/// A transform; the identity for null, nothing for what is none.
std::optional<Matrix> MatrixOf(Answer const& answer);

}  // namespace KVR
