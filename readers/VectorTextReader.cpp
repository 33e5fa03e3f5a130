#include "readers/VectorTextReader.h"

#include <array>
#include <string_view>

#include "framework/api/StringUtil.h"
#include "readers/Ignored.h"

namespace KVR
{

namespace
{
double NumberOf(std::string_view text)
{
    double value = 0.0;
    Ignored(StringUtil::ToDouble(text, value));
    return value;
}
}  // namespace

bool ReadVectorText(UTF8String const& text, double& x, double& y, double& z)
{
    std::array<std::string_view, 3> pieces;
    std::string_view rest = text.View();
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i)
    {
        std::size_t const comma = rest.find(',');
        if (comma == std::string_view::npos)
            return false;
        pieces[i] = rest.substr(0, comma);
        rest.remove_prefix(comma + 1);
    }
    if (rest.find(',') != std::string_view::npos)
        return false;
    pieces.back() = rest;
    x = NumberOf(pieces[0]);
    y = NumberOf(pieces[1]);
    z = NumberOf(pieces[2]);
    return true;
}

}  // namespace KVR
