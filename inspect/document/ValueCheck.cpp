#include "inspect/document/ValueCheck.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/api/StringUtil.h"
#include "framework/api/UnitText.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XStr.h"
#include "inspect/document/DocumentRules.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/document/ValueMeaning.h"
#include "scene/NearestNames.h"

namespace KVR
{

namespace
{

using namespace DocumentRule;

bool IsNumber(std::string_view text)
{
    double value = 0.0;
    return StringUtil::ToDouble(text, value) == StringUtil::kConversionStatus_Success;
}

std::string Lower(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

std::vector<std::string_view> UnitTexts()
{
    std::vector<std::string_view> texts;
    for (int unit = 0; char const* const text = TextOfUnit(static_cast<UnitTypeEnum>(unit)); ++unit)
        texts.emplace_back(text);
    return texts;
}

// The text that one meant: safe when it is the same but for case and white space, or is what stands behind the "_".
std::string MeantAmong(std::string const& text, std::vector<std::string_view> const& texts, bool& isSafe)
{
    std::string lower = Lower(text);
    lower.erase(std::remove_if(lower.begin(), lower.end(), [](char c) { return c == ' ' || c == '\t'; }), lower.end());
    if (lower.empty())
        return {};
    NearestNames nearest(text, 1, std::max<std::size_t>(1, text.size() / 3));
    for (std::string_view const candidate : texts)
    {
        std::string const name = Lower(candidate);
        if (name == lower || (name.size() > lower.size() && name.ends_with("_" + lower)))
        {
            isSafe = true;
            return std::string(candidate);
        }
        nearest.Add(candidate);
        // A name without its prefix may be misspelt as well.
    }
    std::vector<std::string> const names = nearest.Names();
    return names.empty() ? std::string() : names.front();
}

// The pieces of a text of numbers, and whether one of them is none.
std::pair<std::size_t, bool> CountNumbers(std::string const& text)
{
    constexpr std::string_view kSeparators = " ,\t\r\n\v\f";
    std::size_t count = 0;
    bool isBad = false;
    for (std::size_t at = text.find_first_not_of(kSeparators); at != std::string::npos;)
    {
        std::size_t const end = text.find_first_of(kSeparators, at);
        isBad = isBad || !IsNumber(text.substr(at, end - at));
        ++count;
        at = text.find_first_not_of(kSeparators, end);
    }
    return {count, isBad};
}

}  // namespace

ValueCheck::Verdict ValueCheck::JudgeNumber(std::string const& text)
{
    std::string point = text;
    std::replace(point.begin(), point.end(), ',', '.');
    if (point != text && IsNumber(point))
        return {&kDecimalComma, "no number, since decimals stand behind a point", point, true};
    std::size_t length = text.find_first_not_of("0123456789+-.eE");
    std::string const front = text.substr(0, length);
    bool const hasTail = length != std::string::npos && IsNumber(front);
    return {&kNumber, hasTail ? "no number, for what stands behind it" : "no number", hasTail ? front : std::string(),
            false};
}

ValueCheck::Verdict ValueCheck::JudgeTransform(std::string const& text, Misreading const& misread)
{
    if (!misread.isUnderstood)
    {
        std::string point = text;
        std::replace(point.begin(), point.end(), ',', '.');
        if (auto const [numbers, isOff] = CountNumbers(point); point != text && numbers == 16 && !isOff)
            return {&kDecimalComma, "no transform, since decimals stand behind a point", point, true};
        auto const [count, isBad] = CountNumbers(text);
        std::string what = isBad ? "no transform, since a piece of it is no number"
                                 : "no transform, since it has " + std::to_string(count) + " numbers where 16 belong";
        return {&kTransform, std::move(what), {}, false};
    }
    if (misread.isFlat)
        return {&kFlat, "a transform that makes an axis nothing", {}, false};
    if (misread.isMirror)
        return {&kMirror, "a transform that mirrors", {}, false};
    return {&kShear, "a transform whose axes are not at right angles", {}, false};
}

ValueCheck::Verdict ValueCheck::Judge(std::string const& text, Misreading const& misread)
{
    Verdict verdict;
    switch (misread.form)
    {
        case TextForm::kBoolean:
        {
            XStr const document(text.c_str());
            bool meaning = false;
            bool const isKnown = MeaningOfBoolean(document.unicodeForm(), meaning);
            verdict = {&kBoolean, misread.value ? "true" : "false", {}, isKnown};
            if (isKnown)
                verdict.meant = SpellingOf(meaning, misread.test);
            break;
        }
        case TextForm::kUnit:
            verdict = {&kUnit, "no unit", {}, false};
            verdict.meant = MeantAmong(text, UnitTexts(), verdict.isSafe);
            break;
        case TextForm::kEnumeration:
            verdict = {&kEnumeration, "none of the values that it can have", {}, false};
            verdict.meant = MeantAmong(text, misread.texts, verdict.isSafe);
            break;
        case TextForm::kInteger:
        case TextForm::kNumber:
            return JudgeNumber(text);
        case TextForm::kNumberList:
            return {&kNumber, "numbers, some of which are none", {}, false};
        case TextForm::kTransform:
            return JudgeTransform(text, misread);
        case TextForm::kVector:
            return {&kVector,
                    std::count(text.begin(), text.end(), ',') == 2
                        ? "a vector with 0 for each piece that is no number"
                        : "no vector, which is three numbers with commas between them",
                    {},
                    false};
        case TextForm::kTime:
            return {&kTime, "no time", {}, false};
    }
    return verdict;
}

void ValueCheck::Add(Spot const& spot, std::string const& label, std::string const& text, Misreading const& misread)
{
    Verdict verdict = Judge(text, misread);
    std::string found = label.empty() ? text : label + "=\"" + text + "\"";
    Finding* const finding =
        m_check.Add(*verdict.rule, spot, std::move(found), "read as " + verdict.readAs, verdict.meant);
    if (verdict.isSafe && !verdict.meant.empty())
        m_check.Repair(finding, verdict.meant);
}

Finding* ValueCheck::AddIn(std::string const& file, std::string const& label, std::string const& text,
                           Misreading const& misread)
{
    Verdict verdict = Judge(text, misread);
    std::string found = label.empty() ? text : label + "=\"" + text + "\"";
    return m_check.AddIn(*verdict.rule, file, std::move(found), "read as " + verdict.readAs, verdict.meant);
}

}  // namespace KVR
