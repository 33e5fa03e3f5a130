#include "authoring/XmlText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "framework/api/Exception.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR::Authoring
{

namespace
{

void Check(bool holds, char const* message)
{
    if (!holds)
        throw GeneralException(message);
}

// Whether every character is one that an XML document may hold.
bool IsXmlText(UTF16String const& text)
{
    for (wchar_t const wide : text.View())
    {
        auto const c = static_cast<char32_t>(wide);
        bool const isControl = c < U' ' && c != U'\t' && c != U'\n' && c != U'\r';
        if (isControl || c == 0xFFFE || c == 0xFFFF)
            return false;
    }
    return true;
}

// White space goes as references, since a reader makes blanks of it otherwise.
std::string_view ReferenceOf(char byte)
{
    switch (byte)
    {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '"':
            return "&quot;";
        case '>':
            return "&gt;";
        case '\t':
            return "&#9;";
        case '\n':
            return "&#10;";
        case '\r':
            return "&#13;";
        default:
            return {};
    }
}

bool IsPlain(char byte)
{
    return byte >= ' ' && byte < '\x7f' && byte != '&' && byte != '<' && byte != '>' && byte != '"';
}

}  // namespace

void AppendTagStart(std::string& element, std::string_view name)
{
    element += '<';
    element += name;
}

void AppendEndTag(std::string& element, std::string_view name)
{
    element += "</";
    element += name;
    element += '>';
}

void AppendText(std::string& element, std::string_view text)
{
    if (std::all_of(text.begin(), text.end(), &IsPlain))
    {
        element += text;
        return;
    }
    UTF8String const narrow(text);
    UTF16String const wide(narrow);
    Check(UTF8String(wide) == narrow, "a text is UTF-8");
    Check(IsXmlText(wide), "a text has characters that XML knows");
    for (char const byte : text)
    {
        std::string_view const reference = ReferenceOf(byte);
        if (reference.empty())
            element += byte;
        else
            element += reference;
    }
}

void AppendAttribute(std::string& element, std::string_view name, std::string_view value)
{
    element += ' ';
    element += name;
    element += "=\"";
    AppendText(element, value);
    element += '"';
}

std::string NumberText(double value)
{
    Check(std::isfinite(value), "a number is finite");
    std::array<char, 32> text;
    auto const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

}  // namespace KVR::Authoring
