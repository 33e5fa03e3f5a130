#include "exchange/model/Part21Repair.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

namespace KVR
{

namespace
{

// Of what is left out, more may have to go: of a file in which that goes on for longer, nothing is taken.
constexpr int kMostRounds = 16;

// Of their lists, less is something, too.
constexpr std::string_view kShortenable[] = {"OPEN_SHELL",
                                             "CLOSED_SHELL",
                                             "CONNECTED_FACE_SET",
                                             "SHELL_BASED_SURFACE_MODEL",
                                             "GEOMETRIC_SET",
                                             "GEOMETRIC_CURVE_SET",
                                             "PRESENTATION_LAYER_ASSIGNMENT",
                                             "PRODUCT_RELATED_PRODUCT_CATEGORY",
                                             "PRODUCT_TYPE",
                                             "INVISIBILITY",
                                             "DRAUGHTING_MODEL"};

bool IsShortenable(std::string_view type)
{
    return std::find(std::begin(kShortenable), std::end(kShortenable), type) != std::end(kShortenable) ||
           type.ends_with("REPRESENTATION");
}

// Behind a text in quotation marks, or a comment; the place itself for anything else. The end for one without end.
std::size_t Skipped(std::string_view text, std::size_t at)
{
    bool const isComment = text.substr(at, 2) == "/*";
    if (!isComment && text[at] != '\'' && text[at] != '"')
        return at;
    std::size_t const end = isComment ? text.find("*/", at + 2) : text.find(text[at], at + 1);
    return end == std::string_view::npos ? text.size() : end + (isComment ? 2 : 1);
}

// Whether parentheses and texts end, and no other entity begins.
bool IsWhole(std::string_view text)
{
    int level = 0;
    for (std::size_t at = 0; at < text.size();)
    {
        std::size_t const next = Skipped(text, at);
        if (next != at)
        {
            at = next;
            continue;
        }
        char const c = text[at++];
        level += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (level < 0 || c == '=')
            return false;
        if (level == 0 && c == ')')
            return text.find_first_not_of(" \t\r\n", at) == std::string_view::npos;
    }
    return false;
}

class Repair
{
public:
    explicit Repair(Part21File const& file) : m_file(file), m_isKept(file.Entities().size(), false)
    {
        for (std::size_t place = 0; place < m_isKept.size(); ++place)
            m_isKept[place] = file.PlaceOf(At(place).number) == place && IsWhole(At(place).text);
    }

    // False when nothing comes of it.
    bool Run()
    {
        FindReferrers();
        std::vector<std::size_t> work;
        for (std::size_t place = 0; place < m_isKept.size(); ++place)
            if (!m_isKept[place])
                work.push_back(place);
        for (std::size_t place = 0; place < m_isKept.size(); ++place)
            if (m_isKept[place] && NamesMissing(place))
                Touch(place, work);
        for (int round = 0; round < kMostRounds; ++round)
        {
            DropReferrers(work);
            for (std::size_t const place : m_touched)
                if (m_isKept[place] && !Shortened(At(place).text))
                    Drop(place, work);
            if (work.empty())
                return std::find(m_isKept.begin(), m_isKept.end(), true) != m_isKept.end();
        }
        return false;
    }

    Part21Repair Result() const
    {
        Part21Repair result;
        result.text = m_file.Head();
        for (std::size_t place = 0; place < m_isKept.size(); ++place)
        {
            Part21File::Entity const& entity = At(place);
            std::string const number = '#' + std::to_string(entity.number);
            bool const isShortened = NamesMissing(place);
            if (!m_isKept[place])
                result.dropped.push_back(number + ' ' + m_file.TypeOf(entity));
            else if (isShortened)
                result.shortened.push_back(number + ' ' + m_file.TypeOf(entity));
            if (!m_isKept[place])
                continue;
            ++result.taken;
            result.text += number + '=';
            result.text += isShortened ? Shortened(entity.text).value_or("") : std::string(entity.text);
            result.text += ";\n";
        }
        result.text += "ENDSEC;\nEND-ISO-10303-21;\n";
        return result;
    }

private:
    Part21File::Entity const& At(std::size_t place) const { return m_file.Entities()[place]; }

    bool IsThere(Part21File::Number number) const
    {
        std::size_t const place = m_file.PlaceOf(number);
        return place < m_isKept.size() && m_isKept[place];
    }

    bool NamesMissing(std::size_t place) const
    {
        Part21File::Entity const& entity = At(place);
        for (std::uint32_t i = 0; i < entity.referenceCount; ++i)
            if (!IsThere(m_file.References()[entity.firstReference + i]))
                return true;
        return false;
    }

    // By what they name, in order.
    void FindReferrers()
    {
        for (std::size_t place = 0; place < m_isKept.size(); ++place)
            for (std::uint32_t i = 0; i < At(place).referenceCount; ++i)
                m_referrers.emplace_back(m_file.PlaceOf(m_file.References()[At(place).firstReference + i]), place);
        std::sort(m_referrers.begin(), m_referrers.end());
    }

    void Drop(std::size_t place, std::vector<std::size_t>& work)
    {
        m_isKept[place] = false;
        work.push_back(place);
    }

    // One that names what is not there.
    void Touch(std::size_t place, std::vector<std::size_t>& work)
    {
        if (IsShortenable(m_file.TypeOf(At(place))))
            m_touched.push_back(place);
        else
            Drop(place, work);
    }

    void DropReferrers(std::vector<std::size_t>& work)
    {
        m_touched.erase(
            std::remove_if(m_touched.begin(), m_touched.end(), [&](std::size_t place) { return !m_isKept[place]; }),
            m_touched.end());
        while (!work.empty())
        {
            auto from = std::lower_bound(m_referrers.begin(), m_referrers.end(),
                                         std::pair<std::size_t, std::size_t>(work.back(), 0));
            std::size_t const dropped = work.back();
            work.pop_back();
            for (; from != m_referrers.end() && from->first == dropped; ++from)
                if (m_isKept[from->second])
                    Touch(from->second, work);
        }
        std::sort(m_touched.begin(), m_touched.end());
        m_touched.erase(std::unique(m_touched.begin(), m_touched.end()), m_touched.end());
    }

    // The text without references to what is not there; nothing when one stands outside of a list, or a list would be
    // empty.
    std::optional<std::string> Shortened(std::string_view text) const
    {
        int const least = text.starts_with('(') ? 3 : 2;
        int level = 0;
        bool hasLost = false;
        std::string made;
        for (std::size_t at = 0; at < text.size();)
        {
            std::size_t const next = Skipped(text, at);
            char const c = text[at];
            if (next != at)
                made += text.substr(at, next - at);
            else if (c == '#')
            {
                Part21File::Number number = 0;
                auto const end = std::from_chars(text.data() + at + 1, text.data() + text.size(), number);
                auto const behind = static_cast<std::size_t>(end.ptr - text.data());
                hasLost = !IsThere(number);
                if (hasLost && level < least)
                    return {};
                if (!hasLost)
                    made += text.substr(at, behind - at);
                at = behind;
                continue;
            }
            else
            {
                level += c == '(' ? 1 : c == ')' ? -1 : 0;
                if (hasLost && c == ')')
                    made.erase(made.find_last_not_of(" \t\r\n,") + 1);
                if (hasLost && c == ')' && made.ends_with('('))
                    return {};
                if (!hasLost || c != ',')
                    made += c;
                hasLost = hasLost && c != ',' && c != ')';
            }
            at = std::max(next, at + 1);
        }
        return made;
    }

    Part21File const& m_file;
    std::vector<bool> m_isKept;
    std::vector<std::pair<std::size_t, std::size_t>> m_referrers;
    std::vector<std::size_t> m_touched;
};

}  // namespace

Part21Repair Part21Repair::Of(Part21File const& file)
{
    Repair repair(file);
    return !file.Head().empty() && repair.Run() ? repair.Result() : Part21Repair();
}

}  // namespace KVR
