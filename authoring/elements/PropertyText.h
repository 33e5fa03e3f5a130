#pragma once

#include <ctime>
#include <string>
#include <string_view>

namespace KVR
{

class CustomProperty;

namespace Authoring
{

/// A time as a scene states it. Throws GeneralException for one that is no date of the years 1 to 9999.
std::string TimeText(struct tm const& time);

/// A property's type and value as texts.
struct ValueText
{
    std::string_view type;
    std::string value;

    /// Throws GeneralException for a number that is infinite or none, and for a time as TimeText does.
    static ValueText Of(CustomProperty const& content);
};

}  // namespace Authoring

}  // namespace KVR
