#pragma once

#include <ctime>

#include "framework/api/Export.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// A point in time, to the second. A text without a zone is taken as it stands; one with a zone is brought to UTC.
class KVR_API Time
{
public:
    Time();
    ~Time();

    /// Reads ISO 8601: "2024-03-01T12:30:00". The "T" may be a blank, seconds may carry a fraction (dropped), a zone
    /// "Z" or "+02:00" may follow, and a date alone is midnight. False, with the output left alone, for anything else
    /// and for a field out of range.
    static bool FromString(UTF8String const& text, Time& time);

    /// The broken-down time, week day and year day included; 1970-01-01T00:00:00 until read.
    struct tm const& Value() const noexcept { return m_value; }

private:
    struct tm m_value;
};

}  // namespace KVR
