#include "exchange/model/Part21File.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <fstream>
#include <numeric>

#include "exchange/model/DecodedPart21.h"

namespace KVR
{

namespace
{

// Lists in one another deeper than this are damage.
constexpr int kMostLevels = 64;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsKeyword(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || IsDigit(c) || c == '_';
}

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

char Capital(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::size_t KeywordLength(std::string_view text)
{
    std::size_t length = 0;
    while (length < text.size() && IsKeyword(text[length]))
        ++length;
    return length;
}

std::string_view KeywordAt(std::string_view text)
{
    return text.substr(0, KeywordLength(text));
}

// Reads parameters from a text, one after the other.
class ValueReader
{
public:
    explicit ValueReader(std::string_view text) : m_text(text) {}

    // From an opening parenthesis to the closing one.
    Part21File::Values List(int level)
    {
        Part21File::Values values;
        if (!Take('('))
            return values;
        while (m_isGood && !Take(')'))
        {
            Part21Parameter value = Value(level);
            if (!m_isGood)
                break;
            values.push_back(std::move(value));
            Take(',');
        }
        return values;
    }

    // The word that stands here, with the place behind it; empty for none.
    std::string_view Word()
    {
        Skip();
        std::string_view const word = KeywordAt(m_text.substr(m_at));
        m_at += word.size();
        return word;
    }

    bool Take(char wanted)
    {
        Skip();
        if (m_at >= m_text.size() || m_text[m_at] != wanted)
            return false;
        ++m_at;
        return true;
    }

private:
    Part21Parameter Value(int level)
    {
        Part21Parameter value;
        Skip();
        if (m_at >= m_text.size() || level > kMostLevels)
        {
            m_isGood = false;
            return value;
        }
        char const first = m_text[m_at];
        if (first == '$' || first == '*')
            ++m_at;
        else if (first == '(')
        {
            value.kind = Part21Parameter::Kind::kList;
            value.items = List(level + 1);
        }
        else if (first == '\'')
        {
            value.kind = Part21Parameter::Kind::kText;
            value.text = DecodedPart21(Quoted('\''));
        }
        else if (first == '"')
        {
            value.kind = Part21Parameter::Kind::kText;
            value.text = Quoted('"');
        }
        else if (first == '.' && m_at + 1 < m_text.size() && !IsDigit(m_text[m_at + 1]))
        {
            ++m_at;
            value.kind = Part21Parameter::Kind::kWord;
            value.text = Word();
            Take('.');
        }
        else if (first == '#')
        {
            ++m_at;
            value.kind = Part21Parameter::Kind::kReference;
            TakeNumber(value.reference);
        }
        else if (IsDigit(first) || first == '-' || first == '+' || first == '.')
        {
            m_at += first == '+' ? 1 : 0;
            value.kind = Part21Parameter::Kind::kNumber;
            TakeNumber(value.number);
        }
        else
        {
            value.kind = Part21Parameter::Kind::kList;
            value.text = Word();
            m_isGood = m_isGood && !value.text.empty();
            value.items = List(level + 1);
        }
        return value;
    }

    template <class Target>
    void TakeNumber(Target& target)
    {
        auto const [end, error] = std::from_chars(m_text.data() + m_at, m_text.data() + m_text.size(), target);
        m_isGood = m_isGood && error == std::errc();
        m_at = static_cast<std::size_t>(end - m_text.data());
    }

    std::string_view Quoted(char quote)
    {
        std::size_t const begin = ++m_at;
        for (; m_at < m_text.size(); ++m_at)
            if (m_text[m_at] == quote)
            {
                if (m_at + 1 >= m_text.size() || m_text[m_at + 1] != quote)
                    return m_text.substr(begin, m_at++ - begin);
                ++m_at;
            }
        m_isGood = false;
        return {};
    }

    void Skip()
    {
        while (m_at < m_text.size())
            if (IsBlank(m_text[m_at]))
                ++m_at;
            else if (m_text.substr(m_at, 2) == "/*")
            {
                std::size_t const end = m_text.find("*/", m_at + 2);
                m_at = end == std::string_view::npos ? m_text.size() : end + 2;
            }
            else
                return;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    bool m_isGood = true;
};

}  // namespace

Part21File::Part21File(std::string const& path)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file)
        return;
    auto const size = file.tellg();
    if (size <= 0)
        return;
    m_bytes.resize(static_cast<std::size_t>(size));
    file.seekg(0);
    file.read(m_bytes.data(), size);
    m_bytes.resize(static_cast<std::size_t>(file.gcount()));
    Scan();
}

Part21File::Part21File(Bytes content) : m_bytes(std::move(content.bytes))
{
    Scan();
}

std::size_t Part21File::SkipBlanks(std::size_t at) const
{
    while (at < m_bytes.size())
        if (IsBlank(m_bytes[at]))
            ++at;
        else if (m_bytes.compare(at, 2, "/*") == 0)
        {
            std::size_t const end = m_bytes.find("*/", at + 2);
            at = end == std::string::npos ? m_bytes.size() : end + 2;
        }
        else
            break;
    return at;
}

// Behind the quotation mark that ends a text.
std::size_t Part21File::SkipText(std::size_t at) const
{
    std::size_t const end = m_bytes.find(m_bytes[at], at + 1);
    return end == std::string::npos ? m_bytes.size() : end + 1;
}

void Part21File::Scan()
{
    std::size_t at = 0;
    while ((at = SkipBlanks(at)) < m_bytes.size())
    {
        if (m_bytes[at] == '#')
        {
            if (m_entities.empty() && m_headSize == 0)
                m_headSize = at;
            at = ScanEntity(at);
            continue;
        }
        // Keywords of sections, and what the header says.
        while (at < m_bytes.size() && m_bytes[at] != ';')
            at = m_bytes[at] == '\'' ? SkipText(at) : at + 1;
        ++at;
    }
    m_entities.shrink_to_fit();
    m_references.shrink_to_fit();
    auto const isBefore = [](Entity const& a, Entity const& b) { return a.number < b.number; };
    bool const isAscending =
        std::adjacent_find(m_entities.begin(), m_entities.end(),
                           [&](auto const& a, auto const& b) { return !isBefore(a, b); }) == m_entities.end();
    if (isAscending)
        return;
    m_order.resize(m_entities.size());
    std::iota(m_order.begin(), m_order.end(), 0U);
    std::stable_sort(m_order.begin(), m_order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return isBefore(m_entities[a], m_entities[b]); });
}

// From the number sign to behind the semicolon.
std::size_t Part21File::ScanEntity(std::size_t at)
{
    Entity entity;
    char const* const last = m_bytes.data() + m_bytes.size();
    auto const number = std::from_chars(m_bytes.data() + at + 1, last, entity.number);
    at = SkipBlanks(static_cast<std::size_t>(number.ptr - m_bytes.data()));
    bool const isEntity = number.ec == std::errc() && at < m_bytes.size() && m_bytes[at] == '=';
    at = SkipBlanks(at + (isEntity ? 1 : 0));
    std::size_t const begin = at;
    entity.firstReference = static_cast<std::uint32_t>(m_references.size());
    while (at < m_bytes.size() && m_bytes[at] != ';')
    {
        char const c = m_bytes[at];
        if (c == '\'' || c == '"')
            at = SkipText(at);
        else if (c == '#')
        {
            Number reference = 0;
            auto const end = std::from_chars(m_bytes.data() + at + 1, last, reference);
            if (end.ec == std::errc())
                m_references.push_back(reference);
            at = std::max(at + 1, static_cast<std::size_t>(end.ptr - m_bytes.data()));
        }
        else if (c == '/')
            at = std::max(at + 1, SkipBlanks(at));
        else
            ++at;
    }
    entity.referenceCount = static_cast<std::uint32_t>(m_references.size()) - entity.firstReference;
    entity.text = std::string_view(m_bytes).substr(std::min(begin, at), at - std::min(begin, at));
    if (isEntity && !entity.text.empty())
    {
        entity.type = InternType(entity.text);
        m_entities.push_back(entity);
    }
    return at + 1;
}

std::uint32_t Part21File::InternType(std::string_view text)
{
    std::string name;
    if (text.front() != '(')
        name = KeywordAt(text);
    else
    {
        int level = 0;
        for (std::size_t at = 0; at < text.size();)
        {
            char const c = text[at];
            if (c == '\'' || c == '"')
                at = std::min(text.size(), text.find(c, at + 1)) + 1;
            else if (level == 1 && IsKeyword(c))
            {
                std::string_view const word = KeywordAt(text.substr(at));
                name += (name.empty() ? "" : " ") + std::string(word);
                at += word.size();
            }
            else
            {
                level += c == '(' ? 1 : c == ')' ? -1 : 0;
                ++at;
            }
        }
    }
    for (char& c : name)
        c = Capital(c);
    auto const [entry, isNew] = m_typePlaces.try_emplace(std::move(name), static_cast<std::uint32_t>(m_types.size()));
    if (isNew)
        m_types.push_back(entry->first);
    return entry->second;
}

std::size_t Part21File::PlaceOf(Number number) const
{
    if (!m_order.empty())
    {
        auto const found =
            std::lower_bound(m_order.begin(), m_order.end(), number,
                             [&](std::uint32_t place, Number wanted) { return m_entities[place].number < wanted; });
        return found != m_order.end() && m_entities[*found].number == number ? *found : m_entities.size();
    }
    if (m_entities.empty() || number < m_entities.front().number)
        return m_entities.size();
    // Numbers ascend by one at least, and in most files by no more.
    Number const furthest = number - m_entities.front().number;
    if (furthest < m_entities.size() && m_entities[furthest].number == number)
        return furthest;
    auto const end = m_entities.begin() + static_cast<std::ptrdiff_t>(std::min<Number>(furthest, m_entities.size()));
    auto const found = std::lower_bound(m_entities.begin(), end, number,
                                        [](Entity const& entity, Number wanted) { return entity.number < wanted; });
    return found != end && found->number == number ? static_cast<std::size_t>(found - m_entities.begin())
                                                   : m_entities.size();
}

Part21File::Entity const* Part21File::Find(Number number) const
{
    std::size_t const place = PlaceOf(number);
    return place < m_entities.size() ? &m_entities[place] : nullptr;
}

bool Part21File::Is(Entity const& entity, std::string_view type) const
{
    std::string_view types = TypeOf(entity);
    while (!types.empty())
    {
        std::size_t const end = std::min(types.size(), types.find(' '));
        if (types.substr(0, end) == type)
            return true;
        types.remove_prefix(std::min(types.size(), end + 1));
    }
    return false;
}

Part21File::Values Part21File::ParametersOf(Entity const& entity, std::string_view type) const
{
    if (!Is(entity, type))
        return {};
    ValueReader reader(entity.text);
    bool const hasSeveral = reader.Take('(');
    do
    {
        std::string_view const word = reader.Word();
        if (word.empty())
            return {};
        Values values = reader.List(0);
        if (!hasSeveral || std::equal(word.begin(), word.end(), type.begin(), type.end(),
                                      [](char a, char b) { return Capital(a) == b; }))
            return values;
    } while (hasSeveral);
    return {};
}

}  // namespace KVR
