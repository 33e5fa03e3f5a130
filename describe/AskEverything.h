#pragma once

#include <functional>
#include <span>
#include <string>

#include "describe/Tables.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class AnswerVisitor;

/// Asks the producer, its universe and every object that is reached from the root or from the ids all that the tables
/// know: also what no dump shows, and items that a list does not have. For tests: what an operation throws goes on,
/// unless the interface may throw it. Before an object is asked, `met` is told of it, and of ids without an object.
void AskEverything(IProducer& producer, std::span<UTF8String const> ids, std::span<std::string const> extensionTypeIds,
                   AnswerVisitor& to,
                   std::function<void(UTF8String const& id, IObject* object, Interface const* table)> const& met);

}  // namespace KVR
