#include "exchange/export/DocumentText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace KVR
{

bool ReadTriple(std::string const& text, double& x, double& y, double& z)
{
    char const* at = text.data();
    char const* const end = at + text.size();
    for (double* const number : std::array{&x, &y, &z})
    {
        while (at != end && (*at == ' ' || *at == ','))
            ++at;
        auto const [next, error] = std::from_chars(at, end, *number);
        if (error != std::errc() || !std::isfinite(*number))
            return false;
        at = next;
    }
    return at == end;
}

}  // namespace KVR
