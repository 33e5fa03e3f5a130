#include "inspect/document/SpotPlaces.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>

#include "framework/api/IOUtil.h"
#include "framework/api/UTF16String.h"
#include "framework/xml_util/DocumentStream.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "inspect/document/TreeWalk.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

// How far back a start tag is looked for, at first and at most.
constexpr std::uint64_t kFirstLook = 4096;
constexpr std::uint64_t kFarthestLook = std::uint64_t{1} << 28U;
constexpr std::uint64_t kPiece = std::uint64_t{1} << 16U;

// Characters of UTF-8.
std::uint64_t CharacterCount(std::string_view text)
{
    return static_cast<std::uint64_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; }));
}

std::uint64_t LineEnds(std::string_view text)
{
    std::uint64_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n')))
            ++count;
    }
    return count;
}

}  // namespace

// Keeps the places of the elements of some numbers, which ascend.
class SpotPlaces::Places final : public DocumentReceiver
{
public:
    explicit Places(std::vector<std::uint64_t> const& wanted) : m_wanted(wanted) {}

    void Receive(StreamedElement const& element) override
    {
        if (stops.size() < m_wanted.size() && m_wanted[stops.size()] == element.number)
            stops.push_back({element.line, element.column, element.end, 0});
    }

    void ReceiveEnd(std::uint64_t number, std::uint64_t end) override
    {
        auto const found = std::lower_bound(m_wanted.begin(), m_wanted.end(), number);
        if (found != m_wanted.end() && *found == number)
            stops[static_cast<std::size_t>(found - m_wanted.begin())].elementEnd = end;
    }

    std::vector<Stop> stops;

private:
    std::vector<std::uint64_t> const& m_wanted;
};

SpotPlaces::SpotPlaces(std::string const& path, DOMNode const* root, std::vector<DOMNode const*> elements)
    : m_path(path)
{
    std::sort(elements.begin(), elements.end());
    elements.erase(std::unique(elements.begin(), elements.end()), elements.end());
    std::vector<std::uint64_t> numbers;
    std::vector<DOMNode const*> found;
    for (TreeWalk walk(root); walk.Element() && found.size() < elements.size(); walk.Next())
    {
        if (!std::binary_search(elements.begin(), elements.end(), walk.Element()))
            continue;
        numbers.push_back(walk.Number());
        found.push_back(walk.Element());
    }
    Places places(numbers);
    if (!numbers.empty())
        static_cast<void>(StreamDocument(UTF16String(UTF8String(path)), places));
    for (std::size_t i = 0; i < places.stops.size(); ++i)
        m_stops.emplace(found[i], places.stops[i]);
}

SpotPlaces::~SpotPlaces() = default;

std::string SpotPlaces::BytesBefore(std::uint64_t end, std::uint64_t count) const
{
    FilePtr const file(UTF8String(m_path), "rb");
    std::string bytes(static_cast<std::size_t>(std::min(end, count)), '\0');
    if (!file || std::fseek(file, static_cast<long>(end - bytes.size()), SEEK_SET) != 0 ||
        std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size())
        return {};
    return bytes;
}

// Of an element that has nothing but text in it: from its start tag to the next tag.
ByteRange SpotPlaces::TextRange(std::uint64_t tagEnd, DOMNode const* element) const
{
    DOMNode const* const text = element->getFirstChild();
    if (!text || text->getNextSibling() || text->getNodeType() != DOMNode::TEXT_NODE)
        return {};
    FilePtr const file(UTF8String(m_path), "rb");
    if (!file || std::fseek(file, static_cast<long>(tagEnd), SEEK_SET) != 0)
        return {};
    std::uint64_t end = tagEnd;
    for (int c = std::fgetc(file); c != EOF && c != '<'; c = std::fgetc(file))
        ++end;
    return {tagEnd, end};
}

ByteRange SpotPlaces::EndTagName(std::uint64_t end, std::string const& name) const
{
    std::string const bytes = BytesBefore(end, name.size() + kFirstLook);
    std::size_t const start = bytes.rfind("</");
    if (start == std::string::npos || std::string_view(bytes).substr(start + 2, name.size()) != name)
        return {};
    std::uint64_t const begin = end - bytes.size() + start + 2;
    return {begin, begin + name.size()};
}

DocumentPlace SpotPlaces::PlaceOf(Spot const& spot)
{
    auto const found = m_stops.find(spot.element);
    return found == m_stops.end() ? DocumentPlace() : Locate(found->second, spot);
}

std::uint64_t SpotPlaces::EndOf(DOMNode const* element) const
{
    auto const found = m_stops.find(element);
    return found == m_stops.end() ? 0 : found->second.end;
}

// Counts from where it last came to, or from the beginning.
std::uint64_t SpotPlaces::ColumnAt(std::uint64_t offset)
{
    if (offset < m_reached)
    {
        m_reached = 0;
        m_reachedColumn = 1;
    }
    FilePtr const file(UTF8String(m_path), "rb");
    if (!file || std::fseek(file, static_cast<long>(m_reached), SEEK_SET) != 0)
        return 0;
    std::string piece;
    for (; m_reached < offset; m_reached += piece.size())
    {
        piece.resize(static_cast<std::size_t>(std::min(offset - m_reached, kPiece)));
        piece.resize(std::fread(piece.data(), 1, piece.size(), file));
        if (piece.empty())
            return 0;
        std::size_t const lineEnd = piece.find_last_of("\r\n");
        bool const isSameLine = lineEnd == std::string::npos;
        m_reachedColumn = (isSameLine ? m_reachedColumn : 1) +
                          CharacterCount(std::string_view(piece).substr(isSameLine ? 0 : lineEnd + 1));
    }
    return m_reachedColumn;
}

DocumentPlace SpotPlaces::Locate(Stop const& stop, Spot const& spot)
{
    // What is known without the bytes: an encoding of wide characters, or an element that an entity brought.
    DocumentPlace place{stop.line, stop.column, {}, {}};
    if (stop.end == 0)
        return place;
    std::string const name(XMLStrUtil::XMLStrToAStr(spot.element->getNodeName()).View());
    std::string bytes;
    for (std::uint64_t look = kFirstLook; look <= kFarthestLook; look *= 16)
    {
        bytes = BytesBefore(stop.end, look);
        TagText const tag(bytes, stop.end);
        std::uint64_t const start = stop.end - bytes.size();
        ByteRange const tagName = tag.Name();
        bool const isIt =
            tag.IsFound() && std::string_view(bytes).substr(static_cast<std::size_t>(tagName.begin - start),
                                                            tagName.end - tagName.begin) == name;
        if (!isIt && start > 0)
            continue;
        if (!isIt)
            return place;
        std::string const attribute =
            spot.attribute ? std::string(XMLStrUtil::XMLStrToAStr(spot.attribute).View()) : std::string();
        ByteRange range = tag.Tag();
        if (spot.part == SpotPart::kName)
            range = tagName;
        else if (spot.part == SpotPart::kAttributeName)
            range = tag.AttributeName(attribute);
        else if (spot.part == SpotPart::kAttributeValue)
            range = tag.AttributeValue(attribute);
        else if (spot.part == SpotPart::kText)
            range = TextRange(stop.end, spot.element);
        if (range.end == 0)
            range = tag.Tag();
        if (spot.part == SpotPart::kName && stop.elementEnd > stop.end)
            place.endTagName = EndTagName(stop.elementEnd, name);
        place.bytes = range;
        if (spot.part == SpotPart::kText && range.begin >= stop.end)
            return place;
        std::string_view const between = std::string_view(bytes).substr(static_cast<std::size_t>(range.begin - start));
        place.line = stop.line - LineEnds(between);
        std::string_view const before =
            std::string_view(bytes).substr(0, static_cast<std::size_t>(range.begin - start));
        std::size_t const lineStart = before.find_last_of("\r\n");
        if (lineStart != std::string_view::npos)
        {
            place.column = 1 + CharacterCount(before.substr(lineStart + 1));
            return place;
        }
        // The line is longer than what was read. Tags come one behind the other, what is in them in any order.
        std::uint64_t const tagBegin = tag.Tag().begin;
        place.column = ColumnAt(tagBegin) + CharacterCount(before.substr(static_cast<std::size_t>(tagBegin - start)));
        return place;
    }
    return place;
}

}  // namespace KVR
