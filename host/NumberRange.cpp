#include "host/NumberRange.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>

namespace KVR
{

std::optional<double> NumberRange::Read(std::string_view text) const
{
    double number = 0.0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    bool const isNumber = error == std::errc() && end == text.data() + text.size();
    // What is no number is in no range.
    bool const isIn = isNumber && number >= low && number <= high;
    return isIn && (!isWhole || std::trunc(number) == number) ? std::optional(number) : std::nullopt;
}

std::string NumberRange::Text() const
{
    return fmt::format("{}number from {:.15g} to {:.15g}", isWhole ? "whole " : "", low, high);
}

void NumberRange::Check(CLI::Option& option) const
{
    option.check([range = *this](std::string const& text)
                 { return range.Read(text) ? std::string() : text + " is no " + range.Text(); });
}

}  // namespace KVR
