#include "tests/campaigns/Mutation.h"

#include <algorithm>
#include <cctype>
#include <memory>

namespace KVR::Campaigns
{

namespace
{

constexpr std::string_view kNumbers[] = {
    "0",   "-1",    "1",         "2147483647", "2147483648", "4294967295", "18446744073709551615",
    "1e9", "1e999", "-99999999", "nan",        "0.0000001",  "",           "1000000"};

void ChangeNumber(std::string& bytes, Dice& dice)
{
    std::size_t const from = dice.Below(bytes.size());
    auto const isDigit = [](char c) { return c >= '0' && c <= '9'; };
    auto const begin = std::find_if(bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.end(), isDigit);
    auto const end = std::find_if_not(begin, bytes.end(), isDigit);
    bytes.replace(begin, end, dice.Of(kNumbers));
}

void ChangeOnce(std::string& bytes, Dice& dice)
{
    if (bytes.empty())
        return;
    std::size_t const at = dice.Below(bytes.size());
    std::size_t const length = 1 + dice.Below(std::min<std::size_t>(bytes.size() - at, 64));
    switch (dice.Below(7))
    {
        case 0:
            bytes[at] = static_cast<char>(dice.Next());
            return;
        case 1:
            bytes[at] = static_cast<char>(bytes[at] ^ (1 << dice.Below(8)));
            return;
        case 2:
            bytes.erase(at, length);
            return;
        case 3:
            bytes.insert(dice.Below(bytes.size()), bytes.substr(at, length));
            return;
        case 4:
            bytes.resize(at);
            return;
        case 5:
            for (std::size_t i = at; i < std::min(bytes.size(), at + 8); ++i)
                bytes[i] = dice.Below(2) == 0 ? '\xFF' : '\0';
            return;
        default:
            ChangeNumber(bytes, dice);
    }
}

// An element with its tags as they stand.
struct Element
{
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;
    std::vector<std::unique_ptr<Element>> children;

    std::unique_ptr<Element> Copy() const
    {
        auto copy = std::make_unique<Element>();
        copy->name = name;
        copy->attributes = attributes;
        copy->text = text;
        for (auto const& child : children)
            copy->children.push_back(child->Copy());
        return copy;
    }
};

// Reads elements, attributes and text of a well-formed document without comments and the like.
class ElementParser
{
public:
    explicit ElementParser(std::string_view text) : m_text(text) {}

    std::unique_ptr<Element> Parse()
    {
        m_at = m_text.find('<');
        while (m_at != std::string_view::npos && m_at + 1 < m_text.size() &&
               !std::isalpha(static_cast<unsigned char>(m_text[m_at + 1])))
            m_at = m_text.find('<', m_at + 1);
        return m_at == std::string_view::npos ? nullptr : ReadElement();
    }

private:
    std::unique_ptr<Element> ReadElement()
    {
        auto element = std::make_unique<Element>();
        ++m_at;
        element->name = Take(" \t\r\n/>");
        for (;;)
        {
            Skip(" \t\r\n");
            if (At() == '/' || At() == '>' || m_at >= m_text.size())
                break;
            std::string name = Take("=");
            m_at += 1;
            char const quote[] = {At(), '\0'};
            ++m_at;
            element->attributes.emplace_back(std::move(name), Take(quote));
            ++m_at;
        }
        if (At() == '/')
        {
            m_at += 2;
            return element;
        }
        ++m_at;
        while (m_at < m_text.size())
        {
            element->text += Take("<");
            if (m_text.substr(m_at).starts_with("</"))
            {
                m_at = std::min(m_text.find('>', m_at), m_text.size() - 1) + 1;
                return element;
            }
            if (m_text.substr(m_at).starts_with("<!") || m_text.substr(m_at).starts_with("<?"))
            {
                m_at = std::min(m_text.find('>', m_at), m_text.size() - 1) + 1;
                continue;
            }
            element->children.push_back(ReadElement());
        }
        return element;
    }

    char At() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }
    void Skip(char const* characters) { m_at = std::min(m_text.find_first_not_of(characters, m_at), m_text.size()); }
    std::string Take(char const* ends)
    {
        std::size_t const end = std::min(m_text.find_first_of(ends, m_at), m_text.size());
        std::string taken(m_text.substr(m_at, end - m_at));
        m_at = end;
        return taken;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

void Print(Element const& element, std::string& text)
{
    text += '<' + element.name;
    for (auto const& [name, value] : element.attributes)
        text += ' ' + name + "=\"" + value + '"';
    text += '>' + element.text;
    for (auto const& child : element.children)
        Print(*child, text);
    text += "</" + element.name + '>';
}

class SceneMutation
{
public:
    SceneMutation(Element& root, Dice& dice) : m_root(root), m_dice(dice) {}

    void ChangeOnce()
    {
        m_parents.clear();
        m_ids.clear();
        Collect(m_root);
        if (m_parents.empty())
            return;
        Element& parent = *m_dice.Of(m_parents);
        auto& one = parent.children[m_dice.Below(parent.children.size())];
        Element& other = *m_dice.Of(m_parents);
        switch (m_dice.Below(8))
        {
            case 0:
            {
                auto& target = other.children[m_dice.Below(other.children.size())];
                // Neither ends up within itself.
                if (!IsWithin(*one, target.get()) && !IsWithin(*target, one.get()))
                    std::swap(one, target);
                return;
            }
            case 1:
                return Place(*one, one->Copy());
            case 2:
            {
                std::size_t const times = std::size_t{1} << m_dice.Below(6);
                for (std::size_t i = 0; i < times; ++i)
                    Place(parent, parent.children.front()->Copy());
                return;
            }
            case 3:
                parent.children.erase(parent.children.begin() +
                                      static_cast<std::ptrdiff_t>(m_dice.Below(parent.children.size())));
                return;
            case 4:
                one->name = m_dice.Of(m_parents)->children.front()->name;
                return;
            case 5:
                return Place(other, one->Copy());
            default:
                ChangeValue(*one);
        }
    }

private:
    static bool IsWithin(Element const& element, Element const* sought)
    {
        return &element == sought || std::any_of(element.children.begin(), element.children.end(),
                                                 [&](auto const& child) { return IsWithin(*child, sought); });
    }

    void Collect(Element& element)
    {
        if (!element.children.empty())
            m_parents.push_back(&element);
        for (auto const& [name, value] : element.attributes)
            if (name == "ID" || name == "TextureId" || name == "ObjectID")
                m_ids.push_back(value);
        for (auto const& child : element.children)
            Collect(*child);
    }

    void Place(Element& parent, std::unique_ptr<Element> child)
    {
        parent.children.insert(
            parent.children.begin() + static_cast<std::ptrdiff_t>(m_dice.Below(parent.children.size() + 1)),
            std::move(child));
    }

    void ChangeValue(Element& element)
    {
        if (element.attributes.empty())
        {
            element.text = m_dice.Of(kNumbers);
            return;
        }
        std::size_t const place = m_dice.Below(element.attributes.size());
        std::string& value = element.attributes[place].second;
        // Ids, of whatever kind, in the place of ids; else texts that no reader expects.
        if (!m_ids.empty() && (element.attributes[place].first == "ID" || m_dice.Below(2) == 0))
            value = m_dice.Of(m_ids);
        else
            value = m_dice.Of(kNumbers);
        if (m_dice.Below(8) == 0)
            element.attributes.erase(element.attributes.begin() + static_cast<std::ptrdiff_t>(place));
    }

    Element& m_root;
    Dice& m_dice;
    std::vector<Element*> m_parents;
    std::vector<std::string> m_ids;
};

}  // namespace

std::string MutatedBytes(std::string bytes, Dice& dice)
{
    std::size_t const changes = 1 + dice.Below(4);
    for (std::size_t i = 0; i < changes; ++i)
        ChangeOnce(bytes, dice);
    return bytes;
}

std::string MutatedScene(std::string const& document, Dice& dice)
{
    std::unique_ptr<Element> const root = ElementParser(document).Parse();
    if (!root)
        return document;
    SceneMutation mutation(*root, dice);
    std::size_t const changes = 1 + dice.Below(4);
    for (std::size_t i = 0; i < changes; ++i)
        mutation.ChangeOnce();
    std::string text;
    Print(*root, text);
    return text;
}

}  // namespace KVR::Campaigns
