#pragma once

#include <string>

namespace KVR
{

/// The JSON Schema (draft 2020-12) of a dump, as the tables say it, as text that ends with a line end.
std::string DumpSchema();

}  // namespace KVR
