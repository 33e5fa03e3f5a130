#include "authoring/PropertyWriter.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "authoring/XmlText.h"
#include "framework/api/Exception.h"
#include "framework/api/Time.h"

namespace KVR::Authoring
{

namespace
{

void Check(bool holds, char const* message)
{
    if (!holds)
        throw GeneralException(message);
}

template <class Number>
std::string NumberText(Number value)
{
    std::array<char, 32> text;
    auto const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

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

struct ValueText
{
    std::string_view type;
    std::string value;
};

ValueText TextOf(CustomProperty const& content)
{
    switch (content.Type())
    {
        case kPropertyType_Int:
        {
            int value = 0;
            content.Value(value);
            return {"kInt", NumberText(value)};
        }
        case kPropertyType_Double:
        {
            double value = 0.0;
            content.Value(value);
            Check(std::isfinite(value), "a number is finite");
            return {"kDouble", NumberText(value)};
        }
        case kPropertyType_Bool:
        {
            bool value = false;
            content.Value(value);
            return {"kBool", value ? "True" : "False"};
        }
        case kPropertyType_Time:
        {
            struct tm value = {};
            content.Value(value);
            return {"kTime", TimeText(value)};
        }
        case kPropertyType_String:
            break;
    }
    UTF16String value;
    content.Value(value);
    return {"kString", std::string(UTF8String(value).View())};
}

}  // namespace

PropertyWriter::PropertyWriter(UTF16String const& path) : m_file(path)
{
    constexpr std::string_view kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Properties>\n";
    m_file.Bytes(kHead.data(), kHead.size());
}

PropertyWriter::~PropertyWriter() = default;

void PropertyWriter::Property(UTF8String const& id, UTF8String const& objectId, CustomProperty const& content)
{
    ValueText const value = TextOf(content);
    m_element = "  <Property";
    AppendAttribute(m_element, "ID", id.View());
    AppendAttribute(m_element, "ObjectID", objectId.View());
    AppendAttribute(m_element, "Name", UTF8String(content.Name()).View());
    AppendAttribute(m_element, "Type", value.type);
    AppendAttribute(m_element, "Value", value.value);
    m_element += "/>\n";
    m_file.Bytes(m_element.data(), m_element.size());
}

void PropertyWriter::Finish()
{
    constexpr std::string_view kTail = "</Properties>\n";
    m_file.Bytes(kTail.data(), kTail.size());
    m_file.Commit();
}

}  // namespace KVR::Authoring
