#include "inspect/document/ValueMeaning.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "framework/api/Matrix3d.h"
#include "framework/api/StringUtil.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR
{

namespace
{

constexpr std::u16string_view kTrueWords[] = {u"1", u"true", u"yes", u"on", u"t", u"y"};
constexpr std::u16string_view kFalseWords[] = {u"0", u"false", u"no", u"off", u"f", u"n"};

// What readers take, the most usual first.
constexpr XMLCh const* kTrueSpellings[] = {u"1", u"True", u"true"};
constexpr XMLCh const* kFalseSpellings[] = {u"0", u"False", u"false"};

// Without the white space around it.
std::u16string Trimmed(XMLCh const* text)
{
    constexpr std::u16string_view kWhiteSpace = u" \t\r\n";
    std::u16string_view const whole = text;
    std::size_t const first = whole.find_first_not_of(kWhiteSpace);
    if (first == std::u16string_view::npos)
        return {};
    return std::u16string(whole.substr(first, whole.find_last_not_of(kWhiteSpace) - first + 1));
}

template <std::size_t kSize>
bool IsOneOf(XMLCh const* text, std::u16string_view const (&words)[kSize])
{
    return std::any_of(std::begin(words), std::end(words),
                       [&](std::u16string_view word) { return EqualsAnyCase(text, word); });
}

}  // namespace

bool MeaningOfBoolean(XMLCh const* text, bool& value)
{
    std::u16string const trimmed = Trimmed(text);
    bool const isTrue = IsOneOf(trimmed.c_str(), kTrueWords);
    if (!isTrue && !IsOneOf(trimmed.c_str(), kFalseWords))
        return false;
    value = isTrue;
    return true;
}

bool IsOddBoolean(XMLCh const* text, bool value)
{
    bool meaning = value;
    return !MeaningOfBoolean(text, meaning) || meaning != value;
}

std::string SpellingOf(bool value, bool (*test)(XMLCh const* text))
{
    for (XMLCh const* const spelling : value ? kTrueSpellings : kFalseSpellings)
    {
        if (test(spelling) == value)
            return std::string(XMLStrUtil::XMLStrToAStr(spelling).View());
    }
    return {};
}

TransformOddities OdditiesOf(Matrix3d const& matrix)
{
    std::array<std::array<double, 3>, 3> axes{};
    std::array<double, 3> lengths{};
    for (int column = 0; column < 3; ++column)
    {
        for (int row = 0; row < 3; ++row)
            axes[column][row] = matrix.Element(row, column);
        lengths[column] = std::hypot(axes[column][0], axes[column][1], axes[column][2]);
    }
    auto const product = [&](int a, int b)
    { return axes[a][0] * axes[b][0] + axes[a][1] * axes[b][1] + axes[a][2] * axes[b][2]; };
    constexpr double kLeastLength = 1e-12;
    constexpr double kTolerance = 1e-6;
    TransformOddities odd;
    odd.isFlat = std::any_of(lengths.begin(), lengths.end(), [](double length) { return !(length > kLeastLength); });
    if (odd.isFlat)
        return odd;
    double const determinant = axes[0][0] * (axes[1][1] * axes[2][2] - axes[1][2] * axes[2][1]) -
                               axes[1][0] * (axes[0][1] * axes[2][2] - axes[0][2] * axes[2][1]) +
                               axes[2][0] * (axes[0][1] * axes[1][2] - axes[0][2] * axes[1][1]);
    double const relative = determinant / (lengths[0] * lengths[1] * lengths[2]);
    odd.isFlat = !(std::abs(relative) > kTolerance);
    odd.isMirror = !odd.isFlat && determinant < 0.0;
    for (int a = 0; a < 3; ++a)
    {
        int const b = (a + 1) % 3;
        if (std::abs(product(a, b)) > kTolerance * lengths[a] * lengths[b])
            odd.isSheared = !odd.isFlat;
    }
    return odd;
}

bool HasNumbersAlone(XMLCh const* text)
{
    UTF8String const narrow = XMLStrUtil::XMLStrToAStr(text);
    std::string_view rest = narrow.View();
    for (;;)
    {
        std::size_t const comma = rest.find(',');
        double number = 0.0;
        if (StringUtil::ToDouble(rest.substr(0, comma), number) != StringUtil::kConversionStatus_Success)
            return false;
        if (comma == std::string_view::npos)
            return true;
        rest.remove_prefix(comma + 1);
    }
}

bool IsOfXml(XMLCh const* name)
{
    std::u16string_view const text = name;
    return text == u"xmlns" || text.starts_with(u"xmlns:") || text.starts_with(u"xml:") || text.starts_with(u"xsi:");
}

XMLCh const* UnobservedAttribute(xercesc::DOMNode const* element, XMLCh const* name)
{
    if (!IsElement(element))
        return nullptr;
    xercesc::DOMNamedNodeMap const* const attributes = element->getAttributes();
    for (XMLSize_t i = 0; i < attributes->getLength(); ++i)
    {
        if (Equals(attributes->item(i)->getNodeName(), name))
            return attributes->item(i)->getNodeValue();
    }
    return nullptr;
}

}  // namespace KVR
