#include "host/UnitWords.h"

#include <algorithm>

namespace KVR
{

std::vector<std::string> const& UnitWords()
{
    static std::vector<std::string> const words = {"micrometer", "millimeter", "centimeter", "decimeter",
                                                   "meter",      "kilometer",  "microinch",  "mil",
                                                   "inch",       "foot",       "yard",       "mile"};
    return words;
}

UnitTypeEnum UnitOf(std::string const& word)
{
    auto const place = std::find(UnitWords().begin(), UnitWords().end(), word) - UnitWords().begin();
    return static_cast<UnitTypeEnum>(kUnitType_Micrometer + place);
}

}  // namespace KVR
