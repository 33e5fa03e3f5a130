#pragma once

#include <string>

#include "inspect/Explain.h"

namespace KVR
{

class IProducer;

/// Finds where an object occurs, and what decides how it looks there. With a path, those alone
/// whose own ends so; `most` of them are listed, and all are counted. The id is that of a component, an instance or
/// geometry; others do not occur.
void FindOccurrences(IProducer& producer, std::string const& rootId, std::string const& path, std::size_t most,
                     Explanation& explanation);

}  // namespace KVR
