#include "inspect/estimate/DocumentCensus.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iterator>
#include <optional>
#include <string_view>

#include "framework/xml_util/FormatNames.h"
#include "inspect/estimate/DocumentBytes.h"
#include "inspect/estimate/DocumentText.h"

namespace KVR
{

namespace
{

constexpr InfoSection const* kSections[] = {
    &InfoSections::kKernelStore, &InfoSections::kGeometryStore, &InfoSections::kSegmentStore,
    &InfoSections::kMeshStore,   &InfoSections::kAssets,        &InfoSections::kPersistentIds,
};

// The type of a custom data item whose value is the content of a file.
constexpr std::string_view kBlobType = "8";

// Texts longer than that are passed over where they are not ids, paths or switches.
constexpr std::size_t kLongestKept = 4096;

bool IsBlank(int byte)
{
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

bool EndsName(int byte)
{
    return byte == DocumentBytes::kEnd || IsBlank(byte) || byte == '>' || byte == '/' || byte == '=';
}

// The attributes of an element that is looked at, and not just counted.
struct Kept
{
    std::vector<std::pair<std::string, std::string>> attributes;

    std::optional<std::string> Find(std::string_view name) const
    {
        for (auto const& [key, text] : attributes)
            if (key == name)
                return ResolvedReferences(text);
        return std::nullopt;
    }
};

class Pass
{
public:
    Pass(DocumentCensus& census, DocumentBytes& bytes, DocumentCensus::Texts const& wanted)
        : m_census(census), m_bytes(bytes), m_wanted(wanted)
    {
    }

    // Whether the document is whole, as far as this pass looks.
    bool Run()
    {
        std::uint64_t passed = 0;
        while (m_bytes.SkipPast('<', passed))
        {
            if (passed > 0 && m_depth > 0)
            {
                ++m_census.texts;
                m_census.textBytes += passed;
            }
            passed = 0;
            if (!PassMarkup())
                return false;
        }
        return m_depth == 0 && m_census.elements > 0;
    }

private:
    bool PassMarkup()
    {
        switch (m_bytes.Peek())
        {
            case '/':
                return m_bytes.SkipPast('>', m_ignored) && m_depth-- > 0;
            case '?':
                m_bytes.Take();
                return PassUntil('?', 1);
            case '!':
                m_bytes.Take();
                return PassDeclaration();
            default:
                return PassElement();
        }
    }

    // Goes behind so many or more of the byte and a ">".
    bool PassUntil(char byte, int count)
    {
        while (m_bytes.SkipPast(byte, m_ignored))
        {
            int found = 1;
            for (; m_bytes.Peek() == byte; ++found)
                m_bytes.Take();
            if (found >= count && m_bytes.Peek() == '>')
                return m_bytes.Take() == '>';
        }
        return false;
    }

    bool PassDeclaration()
    {
        if (m_bytes.Peek() == '-')
        {
            m_bytes.Take();
            return m_bytes.Take() == '-' && PassUntil('-', 2);
        }
        if (m_bytes.Peek() != '[')
            return PassDocumentType();
        ++m_census.texts;
        std::uint64_t const before = m_ignored;
        bool const isWhole = PassUntil(']', 2);
        m_census.textBytes += m_ignored - before;
        return isWhole;
    }

    bool PassDocumentType()
    {
        for (int brackets = 0;;)
        {
            int const byte = m_bytes.Take();
            if (byte == DocumentBytes::kEnd)
                return false;
            if ((byte == '"' || byte == '\'') && !m_bytes.SkipPast(static_cast<char>(byte), m_ignored))
                return false;
            if (byte == '<' && m_bytes.Peek() == '?')
            {
                if (m_bytes.Take(); !PassUntil('?', 1))
                    return false;
                continue;
            }
            if (byte == '<' && m_bytes.Take() == '!' && m_bytes.Peek() == '-')
            {
                if (!PassUntil('-', 2))
                    return false;
                continue;
            }
            brackets += byte == '[' || byte == '<' ? 1 : byte == ']' ? -1 : 0;
            if (byte == '>' && brackets-- == 0)
                return true;
        }
    }

    bool PassElement()
    {
        PassName(m_name);
        if (m_name.empty())
            return false;
        ++m_census.elements;
        auto const entry = m_census.names.find(std::string_view(m_name));
        if (entry != m_census.names.end())
            ++entry->second;
        else
            m_census.names.emplace(m_name, 1);
        m_kept.attributes.clear();
        m_isKept = IsLookedAt();
        if (!PassAttributes())
            return false;
        bool const isEmpty = m_bytes.Take() == '/';
        if (isEmpty && m_bytes.Take() != '>')
            return false;
        if (m_isKept)
            LookAt();
        m_census.depth = std::max(m_census.depth, m_depth + 1);
        m_depth += isEmpty ? 0 : 1;
        return true;
    }

    void PassName(std::string& name)
    {
        name.clear();
        while (!EndsName(m_bytes.Peek()))
            name.push_back(static_cast<char>(m_bytes.Take()));
    }

    void PassBlanks()
    {
        while (IsBlank(m_bytes.Peek()))
            m_bytes.Take();
    }

    // Up to the "/" or ">" behind the last one.
    bool PassAttributes()
    {
        for (PassBlanks(); m_bytes.Peek() != '/' && m_bytes.Peek() != '>'; PassBlanks())
        {
            PassName(m_attribute);
            PassBlanks();
            if (m_attribute.empty() || m_bytes.Take() != '=')
                return false;
            PassBlanks();
            int const quote = m_bytes.Take();
            if ((quote != '"' && quote != '\'') || !PassValue(static_cast<char>(quote)))
                return false;
            ++m_census.attributes;
        }
        return true;
    }

    bool PassValue(char quote)
    {
        std::uint64_t size = 0;
        bool const isId = !m_wanted.empty() && m_attribute == std::string_view(Names::ID);
        if (m_isKept || isId)
        {
            m_value.clear();
            int byte = m_bytes.Take();
            for (; byte != quote && byte != DocumentBytes::kEnd && m_value.size() < kLongestKept; byte = m_bytes.Take())
                m_value.push_back(static_cast<char>(byte));
            size = m_value.size();
            if (isId && m_wanted.contains(m_value))
                ++m_census.wantedIds;
            if (m_isKept)
                m_kept.attributes.emplace_back(m_attribute, m_value);
            if (byte != quote && !m_bytes.SkipPast(quote, ++size))
                return false;
        }
        else if (!m_bytes.SkipPast(quote, size))
        {
            return false;
        }
        m_census.attributeBytes += size;
        m_census.longestAttribute = std::max(m_census.longestAttribute, size);
        if (m_attribute == std::string_view(Names::Items))
            m_census.listBytes += size;
        return true;
    }

    bool IsLookedAt() const
    {
        if (m_name == std::string_view(Names::CustomDataItem))
            return true;
        return m_depth == 1 &&
               std::any_of(std::begin(kSections), std::end(kSections),
                           [&](InfoSection const* section) { return m_name == std::string_view(section->name); });
    }

    void LookAt()
    {
        std::optional<std::string> const path = m_kept.Find(Names::Path);
        if (!path)
            return;
        if (m_name == std::string_view(Names::CustomDataItem))
        {
            std::string const size = m_kept.Find(Names::BlobBufferSize).value_or(std::string());
            std::uint64_t claimed = 0;
            if (m_kept.Find(Names::Type) == kBlobType &&
                std::from_chars(size.data(), size.data() + size.size(), claimed).ec == std::errc())
                m_census.mentions.push_back({nullptr, *path, claimed});
            return;
        }
        for (InfoSection const* const section : kSections)
        {
            if (m_name != std::string_view(section->name))
                continue;
            if (!section->switchAttribute ||
                m_kept.Find(*section->switchAttribute) == std::string_view(InfoSections::kSwitchedOn))
                m_census.mentions.push_back({section, *path, 0});
        }
    }

    DocumentCensus& m_census;
    DocumentBytes& m_bytes;
    DocumentCensus::Texts const& m_wanted;
    std::uint64_t m_depth = 0;
    std::uint64_t m_ignored = 0;
    std::string m_name;
    std::string m_attribute;
    std::string m_value;
    bool m_isKept = false;
    Kept m_kept;
};

}  // namespace

DocumentCensus::Problem DocumentCensus::Count(std::FILE* file, Texts const& wanted)
{
    DocumentBytes bytes(file);
    if (!bytes.IsKnownEncoding())
        return Problem::kEncoding;
    bool const isWhole = Pass(*this, bytes, wanted).Run();
    if (bytes.HasFailed())
        return Problem::kUnreadable;
    return isWhole ? Problem::kNone : Problem::kMalformed;
}

std::uint64_t DocumentCensus::Named(std::string_view name) const
{
    auto const entry = names.find(name);
    return entry == names.end() ? 0 : entry->second;
}

std::uint64_t DocumentCensus::Objects() const
{
    std::uint64_t objects = 0;
    for (auto const& [name, count] : names)
        objects += IsObjectName(name) ? count : 0;
    return objects;
}

bool DocumentCensus::IsObjectName(std::string_view name) noexcept
{
    return name.size() > 2 && name[0] == 'I' && name[1] >= 'A' && name[1] <= 'Z';
}

}  // namespace KVR
