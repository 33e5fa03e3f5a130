#include "describe/AnswerVisitor.h"

#include <fmt/format.h>

#include <array>
#include <ctime>

#include "framework/api/UnitText.h"

namespace KVR
{

void AnswerVisitor::Unit(UnitTypeEnum unit)
{
    if (char const* const text = TextOfUnit(unit))
        Text(text);
    else
        Integer(unit);
}

void AnswerVisitor::Time(struct tm const& time)
{
    std::array<char, 96> text;
    auto const end =
        fmt::format_to_n(text.data(), text.size(), "{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", time.tm_year + 1900LL,
                         time.tm_mon + 1LL, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
    Text({text.data(), end.size});
}

void AnswerVisitor::Numbers(double const* values, std::size_t count)
{
    BeginList(Layout::Row);
    for (std::size_t i = 0; i < count; ++i)
        Number(values[i]);
    EndList();
}

void AnswerVisitor::Indices(int const* values, std::size_t count)
{
    BeginList(Layout::Row);
    for (std::size_t i = 0; i < count; ++i)
        Integer(values[i]);
    EndList();
}

void AnswerVisitor::Indices(unsigned int const* values, std::size_t count)
{
    BeginList(Layout::Row);
    for (std::size_t i = 0; i < count; ++i)
        Unsigned(values[i]);
    EndList();
}

}  // namespace KVR
