#pragma once

#include <string>
#include <vector>

#include "describe/Answer.h"

namespace KVR
{

class IObject;
class IProducer;

/// What one operation of an object answers.
struct ObjectAnswer
{
    std::string_view operation;
    Answer answer;
    /// Whether the operation is one of the object's own interface, and not of a base that it shares.
    bool isOwn = false;
};

/// What an object answers, operation by operation, as the dump has them. Long lists, and what is measured at a cost,
/// are left out.
std::vector<ObjectAnswer> AnswersOf(IObject& object, IProducer& producer);

/// The operations of an object that answer the id of another one, once each.
std::vector<std::string> OperationsNaming(IObject& object, std::string_view id);

}  // namespace KVR
