#include "host/TextValues.h"

#include <fmt/format.h>

#include "output/SafeText.h"

namespace KVR
{

std::string Quoted(std::string_view label)
{
    return "\"" + Escaped(label) + "\"";
}

std::string Counted(unsigned long long count, std::string_view one, std::string_view many)
{
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

}  // namespace KVR
