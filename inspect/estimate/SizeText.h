#pragma once

#include <string>

namespace KVR
{

/// A number of bytes for readers, with decimal prefixes: "950 bytes", "12.3 kB", "1.50 GB".
std::string SizeText(double bytes);

}  // namespace KVR
