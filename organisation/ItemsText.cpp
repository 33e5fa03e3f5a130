#include "organisation/ItemsText.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "framework/api/Unicode.h"
#include "producer/XMLProducerImpl.h"

namespace KVR
{

namespace
{

// A text of a million ids is converted and split piece by piece, so that its pieces never leave the cache before they
// are kept.
constexpr std::size_t kStretch = 1 << 13;

// Takes a stretch off the front of the text, up to the first comma behind its length.
std::u16string_view TakeStretch(std::u16string_view& text)
{
    std::size_t const comma = text.find(u',', kStretch);
    std::u16string_view const stretch = text.substr(0, comma);
    text.remove_prefix(comma == std::u16string_view::npos ? text.size() : comma + 1);
    return stretch;
}

// An empty piece is dropped, so that the text has room for one in two units at the most.
std::size_t MostPieces(std::u16string_view text)
{
    auto const commas = static_cast<std::size_t>(std::count(text.begin(), text.end(), u','));
    return std::min(commas + 1, (text.size() + 1) / 2);
}

constexpr bool IsWhiteSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Appends the pieces between commas without the white space around them; empty ones are dropped.
void SplitAtCommas(std::string_view text, std::vector<UTF8String>& pieces)
{
    char const* begin = text.data();
    char const* const end = begin + text.size();
    while (begin < end)
    {
        // Ids are short: to look at each byte is quicker than to call something that finds the comma.
        char const* comma = begin;
        while (comma != end && *comma != ',')
            ++comma;
        char const* last = comma;
        while (begin != last && IsWhiteSpace(*begin))
            ++begin;
        while (begin != last && IsWhiteSpace(last[-1]))
            --last;
        if (begin != last)
            pieces.emplace_back(std::string_view(begin, static_cast<std::size_t>(last - begin)));
        begin = comma + 1;
    }
}

}  // namespace

void AddItems(XMLProducerImpl& producer, XMLCh const* text, IdSet& items)
{
    std::u16string_view rest = text ? std::u16string_view(text) : std::u16string_view();
    items.Reserve(items.Size() + MostPieces(rest));
    std::string narrow;
    std::vector<UTF8String> pieces;
    while (!rest.empty())
    {
        narrow.clear();
        Unicode::AppendUtf8(narrow, TakeStretch(rest));
        SplitAtCommas(narrow, pieces);
        if (producer.HasNewObjectIdPrefix())
            std::for_each(pieces.begin(), pieces.end(), [&](UTF8String& piece) { producer.ApplyIdMapping(piece); });
        items.AddAllWithUniquenessCheck(pieces);
    }
}

}  // namespace KVR
