#include "authoring/elements/PropertyText.h"

#include <array>
#include <cstdio>

#include "authoring/XmlText.h"
#include "framework/api/CustomProperty.h"
#include "framework/api/Exception.h"
#include "framework/api/Time.h"
#include "framework/xml_util/EnumTexts.h"

namespace KVR::Authoring
{

namespace
{

void Check(bool holds, char const* message)
{
    if (!holds)
        throw GeneralException(message);
}

}  // namespace

std::string TimeText(struct tm const& time)
{
    // The year's width is checked first, so that the text fits.
    Check(time.tm_year > -1900 && time.tm_year <= 9999 - 1900, "a time has a year from 1 to 9999");
    std::array<char, 96> text;
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d", time.tm_year + 1900, time.tm_mon + 1,
                  time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
    Time readBack;
    Check(Time::FromString(text.data(), readBack), "a time is a date and an hour that exist");
    return text.data();
}

ValueText ValueText::Of(CustomProperty const& content)
{
    std::string_view const type = TextOfValue(kPropertyTypeTexts, content.Type());
    switch (content.Type())
    {
        case kPropertyType_Int:
        {
            int value = 0;
            content.Value(value);
            return {type, std::to_string(value)};
        }
        case kPropertyType_Double:
        {
            double value = 0.0;
            content.Value(value);
            return {type, NumberText(value)};
        }
        case kPropertyType_Bool:
        {
            bool value = false;
            content.Value(value);
            return {type, value ? "True" : "False"};
        }
        case kPropertyType_Time:
        {
            struct tm value = {};
            content.Value(value);
            return {type, TimeText(value)};
        }
        case kPropertyType_String:
            break;
    }
    UTF16String value;
    content.Value(value);
    return {type, std::string(UTF8String(value).View())};
}

}  // namespace KVR::Authoring
