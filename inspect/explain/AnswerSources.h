#pragma once

#include <string>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "inspect/Explain.h"

namespace KVR
{

class IObject;
class IProducer;
class ReadRecord;
class SkeletonScene;

/// What an object answers, and what each answer follows.
std::vector<ExplainedAnswer> ExplainAnswers(IObject& object, IProducer& producer, xercesc::DOMNode const* element,
                                            SkeletonScene const& skeleton, bool hasRecord);

}  // namespace KVR
