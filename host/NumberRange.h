#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace CLI
{
class Option;
}

namespace KVR
{

/// The numbers that make sense somewhere, both ends included.
struct NumberRange
{
    double low = 0.0;
    double high = 0.0;
    bool isWhole = false;

    /// The number that a text is, all of it, if it is one of them.
    std::optional<double> Read(std::string_view text) const;
    /// "number from 0 to 10".
    std::string Text() const;

    /// Has an option refuse all other numbers.
    void Check(CLI::Option& option) const;
};

}  // namespace KVR
