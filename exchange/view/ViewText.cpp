#include "exchange/view/ViewText.h"

#include <charconv>
#include <cmath>

namespace KVR
{

std::string TextOf(ViewJson const& json)
{
    return json.dump(-1, ' ', false, ViewJson::error_handler_t::replace);
}

void ViewColumn::Add(double number)
{
    constexpr int kDigits = 12;
    std::array<char, 40> text{};
    if (!std::isfinite(number))
        return AddText("null");
    // There is no difference to see between the two zeros.
    auto const end = std::to_chars(text.begin(), text.end(), number + 0.0, std::chars_format::general, kDigits).ptr;
    AddText({text.begin(), end});
}

ViewJson JsonOf(std::array<double, 3> const& triple)
{
    ViewJson list = ViewJson::array();
    for (double const x : triple)
        list.push_back(std::isfinite(x) ? x : 0.0);
    return list;
}

void SetText(ViewJson& json, char const* name, std::string_view text)
{
    if (!text.empty())
        json[name] = text;
}

}  // namespace KVR
