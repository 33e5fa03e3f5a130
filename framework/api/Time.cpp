#include "framework/api/Time.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string_view>

namespace KVR
{

namespace
{

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

// Takes exactly so many digits off the front of the text.
std::optional<int> TakeDigits(std::string_view& text, std::size_t count)
{
    if (text.size() < count)
        return {};
    int value = 0;
    for (char const c : text.substr(0, count))
    {
        if (c < '0' || c > '9')
            return {};
        value = value * 10 + (c - '0');
    }
    text.remove_prefix(count);
    return value;
}

bool Take(std::string_view& text, char c)
{
    if (text.empty() || text.front() != c)
        return false;
    text.remove_prefix(1);
    return true;
}

std::optional<sys_days> TakeDate(std::string_view& text)
{
    auto const year = TakeDigits(text, 4);
    if (!year || !Take(text, '-'))
        return {};
    auto const month = TakeDigits(text, 2);
    if (!month || !Take(text, '-'))
        return {};
    auto const day = TakeDigits(text, 2);
    if (!day)
        return {};
    std::chrono::year_month_day const date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    if (!date.ok())
        return {};
    return sys_days(date);
}

bool TakeFraction(std::string_view& text)
{
    if (!Take(text, '.') && !Take(text, ','))
        return true;
    std::size_t const digits = std::min(text.find_first_not_of("0123456789"), text.size());
    text.remove_prefix(digits);
    return digits > 0;
}

std::optional<seconds> TakeClock(std::string_view& text)
{
    auto const hour = TakeDigits(text, 2);
    if (!hour || *hour > 23 || !Take(text, ':'))
        return {};
    auto const minute = TakeDigits(text, 2);
    if (!minute || *minute > 59)
        return {};
    int second = 0;
    if (Take(text, ':'))
    {
        auto const read = TakeDigits(text, 2);
        if (!read || *read > 59 || !TakeFraction(text))
            return {};
        second = *read;
    }
    return hours(*hour) + minutes(*minute) + seconds(second);
}

// What the clock is ahead of UTC; nothing stands for "no zone" as for UTC itself.
std::optional<seconds> TakeZone(std::string_view& text)
{
    if (text.empty() || Take(text, 'Z') || Take(text, 'z'))
        return seconds(0);
    int const sign = Take(text, '+') ? 1 : Take(text, '-') ? -1 : 0;
    if (sign == 0)
        return {};
    auto const hour = TakeDigits(text, 2);
    if (!hour || *hour > 23)
        return {};
    int minute = 0;
    if (!text.empty())
    {
        Take(text, ':');
        auto const read = TakeDigits(text, 2);
        if (!read || *read > 59)
            return {};
        minute = *read;
    }
    return sign * (hours(*hour) + minutes(minute));
}

struct tm BrokenDown(sys_seconds time)
{
    sys_days const day = std::chrono::floor<days>(time);
    std::chrono::year_month_day const date(day);
    std::chrono::hh_mm_ss const clock(time - day);
    struct tm value = {};
    value.tm_year = static_cast<int>(date.year()) - 1900;
    value.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    value.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    value.tm_hour = static_cast<int>(clock.hours().count());
    value.tm_min = static_cast<int>(clock.minutes().count());
    value.tm_sec = static_cast<int>(clock.seconds().count());
    value.tm_wday = static_cast<int>(std::chrono::weekday(day).c_encoding());
    value.tm_yday = static_cast<int>((day - sys_days(date.year() / std::chrono::January / 1)).count());
    return value;
}

std::string_view Trimmed(std::string_view text)
{
    constexpr std::string_view kWhiteSpace = " \t\r\n";
    auto const first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

}  // namespace

Time::Time() : m_value(BrokenDown(sys_seconds())) {}
Time::~Time() = default;

bool Time::FromString(UTF8String const& text, Time& time)
{
    std::string_view rest = Trimmed(text.View());
    auto const date = TakeDate(rest);
    if (!date)
        return false;
    seconds clock(0);
    seconds zone(0);
    if (!rest.empty())
    {
        if (!Take(rest, 'T') && !Take(rest, ' '))
            return false;
        auto const readClock = TakeClock(rest);
        if (!readClock)
            return false;
        auto const readZone = TakeZone(rest);
        if (!readZone || !rest.empty())
            return false;
        clock = *readClock;
        zone = *readZone;
    }
    time.m_value = BrokenDown(*date + clock - zone);
    return true;
}

}  // namespace KVR
