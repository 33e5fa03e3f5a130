#pragma once

#include <string>

#include "framework/api/Enums.h"

namespace CLI
{
class App;
}

namespace KVR
{

/// An option whose value is a unit of length by its word: "millimeter", "inch".
class LengthUnitOption
{
public:
    /// Without a unit until one is given: kUnitType_Unknown.
    LengthUnitOption() = default;
    explicit LengthUnitOption(UnitTypeEnum unit);

    /// Declares the option; this must outlive the command.
    void AddTo(CLI::App& command, std::string const& name, std::string const& description);

    UnitTypeEnum Unit() const;

private:
    std::string m_word;
};

/// The word of a unit of length.
std::string const& WordOfLength(UnitTypeEnum unit);

}  // namespace KVR
