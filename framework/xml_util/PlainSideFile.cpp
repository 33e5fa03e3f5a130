#include "framework/xml_util/PlainSideFile.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "framework/api/Unicode.h"

namespace KVR
{

namespace
{

constexpr std::size_t kWindow = 64 * 1024;

// The declarations that change nothing.
constexpr std::u16string_view kDeclarations[] = {
    u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
    u"<?xml version=\"1.0\" encoding=\"utf-8\"?>",
    u"<?xml version=\"1.0\"?>",
};

constexpr char16_t kReplacement = 0xFFFD;
// The first of the two units that are no characters.
constexpr char16_t kNoCharacter = 0xFFFE;
constexpr char16_t kFirstSurrogate = 0xD800;
constexpr char16_t kByteOrderMark = 0xFEFF;

enum CharacterKind : unsigned char
{
    kKind_Other,
    kKind_Space = 1,
    kKind_NameStart = 2,
    kKind_NamePart = 4,
    // It stands for itself in a value in either quotes.
    kKind_InValue = 8,
};

constexpr std::array<unsigned char, 128> MakeKinds()
{
    std::array<unsigned char, 128> kinds{};
    for (unsigned c = 0; c < kinds.size(); ++c)
    {
        bool const isLetter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
        bool const isSpace = c == ' ' || c == '\t' || c == '\n' || c == '\r';
        bool const isMarkup = c == '<' || c == '&' || c == '"' || c == '\'';
        unsigned kind = kKind_Other;
        if (isSpace)
            kind |= kKind_Space;
        if (isLetter)
            kind |= kKind_NameStart;
        if (isLetter || (c >= '0' && c <= '9') || c == '-' || c == '.')
            kind |= kKind_NamePart;
        if (c >= ' ' && !isMarkup)
            kind |= kKind_InValue;
        kinds[c] = static_cast<unsigned char>(kind);
    }
    return kinds;
}

constexpr std::array<unsigned char, 128> kKinds = MakeKinds();

bool Is(XMLCh character, unsigned kind)
{
    return character < kKinds.size() && (kKinds[character] & kind) != 0;
}

// The first character that is of none of the kinds: at the latest the zero behind the window.
XMLCh* PassAll(XMLCh* at, unsigned kind)
{
    while (Is(*at, kind))
        ++at;
    return at;
}

// The end of a name; its beginning when there is none.
XMLCh* PassName(XMLCh* at)
{
    return Is(*at, kKind_NameStart) ? PassAll(at + 1, kKind_NamePart) : at;
}

bool IsAscii(unsigned char const* bytes, std::size_t count)
{
    unsigned char bits = 0;
    for (std::size_t i = 0; i < count; ++i)
        bits |= bytes[i];
    return bits < 0x80;
}

struct NamedCharacter
{
    std::u16string_view name;
    XMLCh character;
};

constexpr NamedCharacter kNamedCharacters[] = {
    {u"amp", u'&'}, {u"lt", u'<'}, {u"gt", u'>'}, {u"quot", u'"'}, {u"apos", u'\''},
};

// The value of a digit of a base up to 16; 16 for anything else.
unsigned DigitOf(char16_t character)
{
    if (character >= u'0' && character <= u'9')
        return character - u'0';
    char16_t const lower = character | 0x20;
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : 16;
}

// The character of what stands between "&" and ";"; 0 for one that is not plain.
XMLCh ReferredCharacter(std::u16string_view text)
{
    auto const* const named = std::find_if(std::begin(kNamedCharacters), std::end(kNamedCharacters),
                                           [&](NamedCharacter const& row) { return row.name == text; });
    if (named != std::end(kNamedCharacters))
        return named->character;
    if (!text.starts_with(u'#'))
        return 0;
    bool const isHexadecimal = text.starts_with(u"#x");
    constexpr std::size_t kMostDigits = 4;
    text.remove_prefix(isHexadecimal ? 2 : 1);
    if (text.empty() || text.size() > kMostDigits)
        return 0;
    unsigned const base = isHexadecimal ? 16 : 10;
    unsigned number = 0;
    for (char16_t const digit : text)
    {
        if (DigitOf(digit) >= base)
            return 0;
        number = base * number + DigitOf(digit);
    }
    bool const isPlain = (number >= u' ' && number < kFirstSurrogate) || Is(static_cast<XMLCh>(number), kKind_Space);
    return isPlain ? static_cast<XMLCh>(number) : XMLCh{0};
}

// Puts characters in the place of the references to them, and answers where the text then ends; null when one of them
// is not plain.
XMLCh* Resolve(XMLCh* from, XMLCh* const to)
{
    XMLCh* out = std::find(from, to, u'&');
    for (from = out; from != to;)
    {
        if (*from != u'&')
        {
            *out++ = *from++;
            continue;
        }
        XMLCh* const end = std::find(from, to, u';');
        XMLCh const character = ReferredCharacter({from + 1, static_cast<std::size_t>(end - from) - 1});
        if (end == to || character == 0)
            return nullptr;
        *out++ = character;
        from = end + 1;
    }
    return out;
}

}  // namespace

PlainSideFile::PlainSideFile(std::FILE* file, SideFileReceiver& receiver)
    : m_file(file),
      m_receiver(receiver),
      m_bytes(kWindow),
      m_text(kWindow + 1),
      m_next(m_text.data()),
      m_end(m_text.data())
{
}

// Adds to the window; whether there was anything to add, and room for it. A byte makes no more than one character, and
// what is no UTF-8 a zero.
bool PlainSideFile::Fill()
{
    m_end = std::copy(m_next, m_end, m_text.data());
    m_next = m_text.data();
    std::size_t const room = static_cast<std::size_t>(m_text.data() + kWindow - m_end);
    if (room <= m_kept)
        return false;
    std::size_t const got = std::fread(m_bytes.data() + m_kept, 1, room - m_kept, m_file);
    unsigned char const* const begin = m_bytes.data();
    unsigned char const* const end = begin + m_kept + got;
    if (begin == end)
        return false;
    // A sequence of bytes may go on in the next portion.
    auto const whole =
        std::find_if(std::reverse_iterator(end), std::reverse_iterator(begin), [](unsigned char b) { return b < 0x80; })
            .base();
    if (whole == begin || got == 0)
        *m_end++ = 0;
    else
        m_end = Decode(begin, whole, m_end);
    *m_end = 0;
    m_kept = static_cast<std::size_t>(std::copy(whole, end, m_bytes.data()) - m_bytes.data());
    return true;
}

XMLCh* PlainSideFile::Decode(unsigned char const* from, unsigned char const* to, XMLCh* out)
{
    constexpr std::ptrdiff_t kRun = 32;
    auto const isAscii = [](unsigned char byte) { return byte < 0x80; };
    while (from != to)
    {
        for (; to - from >= kRun && IsAscii(from, kRun); from += kRun)
            out = std::copy_n(from, kRun, out);
        auto const* const asciiEnd = std::find_if_not(from, to, isAscii);
        out = std::copy(from, asciiEnd, out);
        from = std::find_if(asciiEnd, to, isAscii);
        std::u16string const other = Unicode::Utf16FromUtf8(
            {reinterpret_cast<char const*>(asciiEnd), static_cast<std::size_t>(from - asciiEnd)});
        // Where bytes are no text stands the replacement; a true one goes to the parser with them.
        out = std::replace_copy(other.begin(), other.end(), out, kReplacement, char16_t{0});
    }
    return out;
}

bool PlainSideFile::Read()
{
    if (!Fill() || !PassDeclaration())
        return false;
    for (;;)
    {
        m_next = PassAll(m_next, kKind_Space);
        if (m_next == m_end)
        {
            if (Fill())
                continue;
            return m_hasRoot && m_openCount == 0;
        }
        Step const step = TakeTag();
        if (step == Step::kNotPlain || (step == Step::kNeedsMore && !Fill()))
            return false;
    }
}

// Passes over a byte order mark and a declaration that there may be; false for another than those above.
bool PlainSideFile::PassDeclaration()
{
    if (*m_next == kByteOrderMark)
        ++m_next;
    std::u16string_view const text(m_next, static_cast<std::size_t>(m_end - m_next));
    if (!text.starts_with(u"<?"))
        return true;
    for (std::u16string_view const declaration : kDeclarations)
    {
        if (text.starts_with(declaration))
        {
            m_next += declaration.size();
            return true;
        }
    }
    return false;
}

// A tag is taken as a whole or not at all: until it is, nothing in the window changes.
PlainSideFile::Step PlainSideFile::TakeTag()
{
    XMLCh* const at = m_next;
    if (*at != u'<')
        return Step::kNotPlain;
    if (at[1] == u'!')
        return PassComment(at + 2);
    if (m_hasRoot && m_openCount == 0)
        return Step::kNotPlain;
    return at[1] == u'/' ? TakeEnd(at + 2) : TakeBegin(at + 1);
}

PlainSideFile::Step PlainSideFile::PassComment(XMLCh* at)
{
    for (int i = 0; i < 2; ++i, ++at)
    {
        if (*at != u'-')
            return StepAt(at);
    }
    // Two hyphens end it.
    while (*at != u'-' || at[1] != u'-')
    {
        bool const isText = *at >= u' ' ? *at < kNoCharacter : Is(*at, kKind_Space);
        if (!isText)
            return StepAt(at);
        ++at;
    }
    if (at[2] != u'>')
        return StepAt(at + 2);
    m_next = at + 3;
    return Step::kTaken;
}

PlainSideFile::Step PlainSideFile::TakeBegin(XMLCh* at)
{
    Piece const name{at, PassName(at)};
    at = name.end;
    if (name.begin == name.end)
        return StepAt(at);
    m_attributeCount = 0;
    m_hasReferences = false;
    for (;;)
    {
        XMLCh* const behind = PassAll(at, kKind_Space);
        bool const isParted = behind != at;
        at = behind;
        if (*at == u'>' || *at == u'/')
            break;
        Step const step = isParted ? TakeAttribute(at) : StepAt(at);
        if (step != Step::kTaken)
            return step;
    }
    bool const isEmpty = *at == u'/';
    if (isEmpty)
        ++at;
    if (*at != u'>')
        return StepAt(at);
    if (m_openCount == kMostOpen)
        return Step::kNotPlain;

    m_next = at + 1;
    for (std::size_t i = 0; i < m_attributeCount; ++i)
    {
        XMLCh* const valueEnd = m_hasReferences ? Resolve(m_values[i].begin, m_values[i].end) : m_values[i].end;
        if (!valueEnd)
            return Step::kNotPlain;
        *m_names[i].end = *valueEnd = 0;
        m_attributes[i] = {m_names[i].begin, m_values[i].begin};
    }
    *name.end = 0;
    m_hasRoot = true;
    m_open[m_openCount++].assign(name.begin, name.end);
    ++m_told;
    m_receiver.Begin({name.begin, {m_attributes.data(), m_attributeCount}, nullptr});
    if (isEmpty)
        TellEnd();
    return Step::kTaken;
}

// Takes name and value, and goes behind the closing quote.
PlainSideFile::Step PlainSideFile::TakeAttribute(XMLCh*& at)
{
    Piece const name{at, PassName(at)};
    at = PassAll(name.end, kKind_Space);
    if (name.begin == name.end || *at != u'=')
        return StepAt(at);
    at = PassAll(at + 1, kKind_Space);
    XMLCh const quote = *at;
    if (quote != u'"' && quote != u'\'')
        return StepAt(at);
    Piece value{++at, nullptr};
    for (; *at != quote; ++at)
    {
        bool const isText = *at < kKinds.size() ? Is(*at, kKind_InValue) : *at < kNoCharacter;
        // That leaves the other quote, and what a reference begins with.
        if (!isText && *at != u'"' && *at != u'\'' && *at != u'&')
            return StepAt(at);
        m_hasReferences |= *at == u'&';
    }
    value.end = at++;
    if (m_attributeCount == kMostAttributes || IsRepeated(name))
        return Step::kNotPlain;
    m_names[m_attributeCount] = name;
    m_values[m_attributeCount++] = value;
    return Step::kTaken;
}

bool PlainSideFile::IsRepeated(Piece const& name) const
{
    return std::any_of(m_names.begin(), m_names.begin() + static_cast<std::ptrdiff_t>(m_attributeCount),
                       [&](Piece const& other) { return std::equal(name.begin, name.end, other.begin, other.end); });
}

PlainSideFile::Step PlainSideFile::TakeEnd(XMLCh* at)
{
    XMLCh* const nameEnd = PassName(at);
    bool const isOpen =
        m_openCount > 0 && m_open[m_openCount - 1] == std::u16string_view(at, static_cast<std::size_t>(nameEnd - at));
    XMLCh* const end = PassAll(nameEnd, kKind_Space);
    if (*end != u'>')
        return StepAt(end);
    if (!isOpen)
        return Step::kNotPlain;
    m_next = end + 1;
    TellEnd();
    return Step::kTaken;
}

void PlainSideFile::TellEnd()
{
    --m_openCount;
    ++m_told;
    m_receiver.End();
}

}  // namespace KVR
