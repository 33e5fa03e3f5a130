#include "exchange/certify/part21/Part21Model.h"

#include <charconv>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "exchange/certify/part21/DecodedPart21.h"

namespace KVR::Certification
{

namespace
{

// Lists in lists that are deeper are a damaged file's.
constexpr int kDeepestList = 64;

bool IsSpace(char sign)
{
    return sign == ' ' || sign == '\n' || sign == '\r' || sign == '\t';
}

bool IsNameSign(char sign)
{
    return (sign >= 'A' && sign <= 'Z') || (sign >= 'a' && sign <= 'z') || (sign >= '0' && sign <= '9') ||
           sign == '_' || sign == '-' || sign == '!';
}

// Behind blanks and comments.
std::size_t BehindSpace(std::string const& text, std::size_t place)
{
    while (place < text.size())
    {
        if (IsSpace(text[place]))
            ++place;
        else if (text.compare(place, 2, "/*") == 0)
        {
            std::size_t const end = text.find("*/", place + 2);
            place = end == std::string::npos ? text.size() : end + 2;
        }
        else
            break;
    }
    return place;
}

// Behind the closing sign of a text, which a doubled one is not.
std::size_t BehindText(std::string const& text, std::size_t place)
{
    for (;;)
    {
        place = text.find('\'', place + 1);
        if (place == std::string::npos)
            return text.size();
        if (place + 1 >= text.size() || text[place + 1] != '\'')
            return place + 1;
        ++place;
    }
}

// Reads parameters; what makes no sense ends a list.
class ValueReader
{
public:
    ValueReader(std::string const& text, std::size_t place) : m_text(text), m_place(place) {}

    // From "(" on.
    std::vector<Part21Parameter> ReadList(int depth)
    {
        std::vector<Part21Parameter> list;
        ++m_place;
        while (Sign() != ')' && Sign() != '\0' && depth < kDeepestList)
        {
            std::size_t const before = m_place;
            list.push_back(ReadValue(depth));
            if (Sign() == ',')
                ++m_place;
            else if (m_place == before)
                break;
        }
        if (Sign() == ')')
            ++m_place;
        return list;
    }

private:
    char Sign()
    {
        m_place = BehindSpace(m_text, m_place);
        return m_place < m_text.size() ? m_text[m_place] : '\0';
    }

    Part21Parameter ReadValue(int depth)
    {
        Part21Parameter value;
        char const sign = Sign();
        if (sign == '\'')
        {
            std::size_t const end = BehindText(m_text, m_place);
            value.kind = Part21Parameter::Kind::kText;
            value.text = DecodedPart21(std::string_view(m_text).substr(m_place + 1, end - m_place - 2));
            m_place = end;
        }
        else if (sign == '(')
        {
            value.kind = Part21Parameter::Kind::kList;
            value.list = ReadList(depth + 1);
        }
        else if (sign == '#')
        {
            value.kind = Part21Parameter::Kind::kReference;
            Take(value.reference, m_place + 1);
        }
        else if (sign == '.' && m_place + 1 < m_text.size() && IsNameSign(m_text[m_place + 1]))
        {
            std::size_t const end = std::min(m_text.find('.', m_place + 1), m_text.size() - 1);
            value.kind = Part21Parameter::Kind::kEnumeration;
            value.text = m_text.substr(m_place + 1, end - m_place - 1);
            m_place = end + 1;
        }
        else if ((sign >= '0' && sign <= '9') || sign == '-' || sign == '+' || sign == '.')
        {
            value.kind = Part21Parameter::Kind::kNumber;
            Take(value.number, m_place + (sign == '+' ? 1 : 0));
        }
        else if (sign == '"')
            m_place = std::min(m_text.find('"', m_place + 1), m_text.size() - 1) + 1;
        else if (sign == '$' || sign == '*')
            ++m_place;
        else if (IsNameSign(sign))
            ReadTyped(value, depth);
        return value;
    }

    void ReadTyped(Part21Parameter& value, int depth)
    {
        std::size_t const begin = m_place;
        while (m_place < m_text.size() && IsNameSign(m_text[m_place]))
            ++m_place;
        value.kind = Part21Parameter::Kind::kTyped;
        value.text = m_text.substr(begin, m_place - begin);
        if (Sign() == '(')
            value.list = ReadList(depth + 1);
    }

    template <class Number>
    void Take(Number& number, std::size_t begin)
    {
        char const* const end = m_text.data() + m_text.size();
        auto const [stop, error] = std::from_chars(m_text.data() + begin, end, number);
        m_place = error == std::errc() ? static_cast<std::size_t>(stop - m_text.data()) : begin;
    }

    std::string const& m_text;
    std::size_t m_place;
};

}  // namespace

double Part21Parameter::Number() const
{
    return kind == Kind::kTyped && list.size() == 1 ? list.front().Number() : number;
}

std::vector<unsigned long long> Part21Parameter::References() const
{
    if (kind == Kind::kReference)
        return {reference};
    std::vector<unsigned long long> all;
    for (Part21Parameter const& value : list)
        for (unsigned long long const id : value.References())
            all.push_back(id);
    return all;
}

Part21Model::Part21Model(std::string text) : m_text(std::move(text))
{
    m_place = BehindSpace(m_text, m_text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0);
    if (m_text.compare(m_place, 13, "ISO-10303-21;") != 0)
        throw std::runtime_error("it is no exchange structure");
    m_place += 13;
    bool isData = false;
    for (;;)
    {
        SkipSpace();
        if (m_place >= m_text.size())
            throw std::runtime_error("it ends early");
        if (m_text[m_place] == '#' && isData)
        {
            ReadEntity();
            continue;
        }
        std::string_view const name = ReadName();
        if (name == "DATA")
            isData = true;
        else if (name == "ENDSEC")
            isData = false;
        SkipSpace();
        if (m_place < m_text.size() && m_text[m_place] == '(')
            SkipList();
        SkipSpace();
        Expect(';');
        if (name == "END-ISO-10303-21")
            return;
    }
}

Part21Model Part21Model::Read(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!file.good() && !file.eof())
        throw std::runtime_error("it cannot be read");
    return Part21Model(std::move(text));
}

std::vector<Part21Model::Id> const& Part21Model::Of(std::string_view type) const
{
    static std::vector<Id> const none;
    auto const found = m_ofType.find(type);
    return found == m_ofType.end() ? none : found->second;
}

bool Part21Model::Is(Id id, std::string_view type) const
{
    for (std::string_view const own : TypesOf(id))
        if (own == type)
            return true;
    return false;
}

std::vector<std::string_view> Part21Model::TypesOf(Id id) const
{
    std::vector<std::string_view> types;
    if (auto const found = m_entities.find(id); found != m_entities.end())
        for (std::size_t i = 0; i < found->second.recordCount; ++i)
            types.push_back(m_records[found->second.firstRecord + i].type);
    return types;
}

std::vector<Part21Parameter> Part21Model::Parameters(Id id, std::string_view type) const
{
    auto const found = m_entities.find(id);
    if (found == m_entities.end())
        return {};
    for (std::size_t i = 0; i < found->second.recordCount; ++i)
        if (Record const& record = m_records[found->second.firstRecord + i]; type.empty() || record.type == type)
            return ValueReader(m_text, record.begin).ReadList(0);
    return {};
}

Part21Parameter Part21Model::Parameter(Id id, std::size_t place, std::string_view type) const
{
    std::vector<Part21Parameter> values = Parameters(id, type);
    return place < values.size() ? std::move(values[place]) : Part21Parameter();
}

void Part21Model::ReadEntity()
{
    ++m_place;
    Id const id = ReadNumber();
    SkipSpace();
    Expect('=');
    SkipSpace();
    Entity const entity{m_records.size(), 0};
    if (m_place < m_text.size() && m_text[m_place] == '(')
    {
        ++m_place;
        for (SkipSpace(); m_place < m_text.size() && m_text[m_place] != ')'; SkipSpace())
            ReadRecord();
        Expect(')');
    }
    else
        ReadRecord();
    SkipSpace();
    Expect(';');
    Entity const whole{entity.firstRecord, m_records.size() - entity.firstRecord};
    if (!m_entities.emplace(id, whole).second)
        throw std::runtime_error("entity #" + std::to_string(id) + " is there twice");
    for (std::size_t i = 0; i < whole.recordCount; ++i)
        m_ofType[m_records[whole.firstRecord + i].type].push_back(id);
}

void Part21Model::ReadRecord()
{
    std::string_view const type = ReadName();
    SkipSpace();
    m_records.push_back({type, m_place});
    SkipList();
}

void Part21Model::SkipSpace()
{
    m_place = BehindSpace(m_text, m_place);
}

void Part21Model::Expect(char sign)
{
    if (m_place >= m_text.size() || m_text[m_place] != sign)
        throw std::runtime_error("it makes no sense at byte " + std::to_string(m_place));
    ++m_place;
}

unsigned long long Part21Model::ReadNumber()
{
    unsigned long long number = 0;
    auto const [stop, error] = std::from_chars(m_text.data() + m_place, m_text.data() + m_text.size(), number);
    if (error != std::errc())
        throw std::runtime_error("it makes no sense at byte " + std::to_string(m_place));
    m_place = static_cast<std::size_t>(stop - m_text.data());
    return number;
}

std::string_view Part21Model::ReadName()
{
    std::size_t const begin = m_place;
    while (m_place < m_text.size() && IsNameSign(m_text[m_place]))
        ++m_place;
    if (m_place == begin)
        throw std::runtime_error("it makes no sense at byte " + std::to_string(m_place));
    return std::string_view(m_text).substr(begin, m_place - begin);
}

void Part21Model::SkipList()
{
    Expect('(');
    for (std::size_t depth = 1; depth > 0;)
    {
        m_place = m_text.find_first_of("()'/", m_place);
        if (m_place == std::string::npos)
        {
            m_place = m_text.size();
            throw std::runtime_error("it ends early");
        }
        char const sign = m_text[m_place];
        if (sign == '\'')
            m_place = BehindText(m_text, m_place);
        else if (sign == '/')
            m_place = std::max(m_place + 1, BehindSpace(m_text, m_place));
        else
        {
            depth = sign == '(' ? depth + 1 : depth - 1;
            ++m_place;
        }
    }
}

}  // namespace KVR::Certification
