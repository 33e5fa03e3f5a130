#include "inspect/explain/ReadingTrace.h"

#include "framework/api/IObject.h"
#include "inspect/document/ValueMeaning.h"

namespace KVR
{

ReadingTrace::Reading const* ReadingTrace::ReadingOf(XMLCh const* text) const
{
    auto const found = m_readings.find(text);
    return found == m_readings.end() ? nullptr : &found->second;
}

void ReadingTrace::TextRead(TextReading const& reading)
{
    if (!reading.text)
        return;
    m_readings[reading.text] = {
        reading.form, reading.isUnderstood, reading.value, reading.test, {reading.texts.begin(), reading.texts.end()}};
}

void ReadingTrace::ObjectRegistered(xercesc::DOMNode const* element, IObject const& object, bool isSecond)
{
    if (!isSecond && !m_element && object.Id() == m_id)
        m_element = element;
}

std::string UnderstandingOf(ReadingTrace::Reading const& reading)
{
    if (reading.form == TextForm::kBoolean)
        return std::string("a boolean, read as ") + (reading.value ? "true" : "false");
    char const* const noun = [&]
    {
        switch (reading.form)
        {
            case TextForm::kInteger:
                return "an integer";
            case TextForm::kNumber:
                return "a number";
            case TextForm::kEnumeration:
                return "one of several texts";
            case TextForm::kUnit:
                return "a unit";
            case TextForm::kTime:
                return "a time";
            case TextForm::kVector:
                return "a vector of three numbers";
            case TextForm::kTransform:
                return "a transform of sixteen numbers";
            case TextForm::kNumberList:
                return "a list of numbers";
            default:
                return "a text";
        }
    }();
    return reading.isUnderstood ? std::string(noun) : std::string("read as ") + noun + ", which it is not";
}

std::vector<std::string> OtherTexts(ReadingTrace::Reading const* reading, std::string const& text)
{
    if (!reading)
        return {text + "~", "1", "0"};
    switch (reading->form)
    {
        case TextForm::kBoolean:
        {
            std::string const other = SpellingOf(!reading->value, reading->test);
            return {other.empty() ? "~" : other};
        }
        case TextForm::kEnumeration:
        {
            std::vector<std::string> others;
            for (std::string const& each : reading->texts)
                if (each != text && others.size() < 2)
                    others.push_back(each);
            return others;
        }
        case TextForm::kUnit:
            return {"kUnitType_Inch", "kUnitType_Radian", "kUnitType_Meter", "kUnitType_Gram"};
        case TextForm::kTime:
            return {"2001-02-03T04:05:06", "2001-02-03 04:05:06", "981173106"};
        case TextForm::kVector:
            return {"0.125,0.25,0.5"};
        case TextForm::kTransform:
            return {"1 0 0 7.125 0 1 0 6.25 0 0 1 5.5 0 0 0 1"};
        default:
            return {text == "7" ? "5" : "7", "0.125"};
    }
}

}  // namespace KVR
