#include "exchange/certify/FactTexts.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <sstream>

namespace KVR::Certification
{

std::string NumberText(double value)
{
    // Without the sign of a zero.
    return fmt::format("{:.6g}", std::abs(value) < 1e-9 ? 0.0 : value);
}

std::string PropertyValueText(std::string const& text)
{
    // Line ends of a text are blanks to some.
    std::string line = text;
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c >= '\0' && c < ' '; }, ' ');
    std::istringstream words(line);
    std::string all;
    for (std::string word; words >> word;)
    {
        double value = 0.0;
        auto const [stop, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        if (error != std::errc() || stop != word.data() + word.size())
            return line;
        all += (all.empty() ? "" : " ") + NumberText(value);
    }
    return all;
}

std::string StatedText(std::string const& name, std::string const& value)
{
    return PropertyValueText(name) + " = " + value;
}

std::string UnitName(double millimetres)
{
    return fmt::format("{:.9g} mm", millimetres);
}

FactPoint UnitOf(FactPoint const& direction)
{
    double const length = std::hypot(direction[0], direction[1], direction[2]);
    double const factor = length > 0.0 ? 1.0 / length : 0.0;
    return {direction[0] * factor, direction[1] * factor, direction[2] * factor};
}

void AddView(ModelFacts& facts, std::string const& name, FactPoint const& eye, FactPoint const& direction,
             FactPoint const& up)
{
    FactPoint const seen = UnitOf(direction);
    double const along = Dot(up, seen);
    FactPoint const square = UnitOf({up[0] - along * seen[0], up[1] - along * seen[1], up[2] - along * seen[2]});
    facts.Add(kTable_Views, name, {eye[0], eye[1], eye[2], seen[0], seen[1], seen[2], square[0], square[1], square[2]});
}

void AddCut(ModelFacts& facts, std::string const& view, FactPoint const& origin, FactPoint const& normal)
{
    FactPoint const unit = UnitOf(normal);
    facts.Add(kTable_Cuts, view, {Dot(origin, unit), unit[0], unit[1], unit[2]});
}

}  // namespace KVR::Certification
