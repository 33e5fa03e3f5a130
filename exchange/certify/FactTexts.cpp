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

std::string UnitName(double millimetres)
{
    return fmt::format("{:.9g} mm", millimetres);
}

void AddView(ModelFacts& facts, std::string const& name, FactPoint const& eye, FactPoint const& direction)
{
    double const length = std::hypot(direction[0], direction[1], direction[2]);
    double const factor = length > 0.0 ? 1.0 / length : 0.0;
    facts.Add(kTable_Views, name,
              {eye[0], eye[1], eye[2], direction[0] * factor, direction[1] * factor, direction[2] * factor});
}

}  // namespace KVR::Certification
