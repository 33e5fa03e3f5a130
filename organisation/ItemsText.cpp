#include "organisation/ItemsText.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

// A text with commas in it, both counted in one pass.
struct CountedText
{
    explicit CountedText(XMLCh const* text)
    {
        XMLCh const* end = text;
        for (; *end != 0; ++end)
            commas += *end == u',' ? 1 : 0;
        units = std::u16string_view(text, static_cast<std::size_t>(end - text));
    }

    // An empty piece is dropped, so that the text has room for one in two units at the most.
    std::size_t MostPieces() const { return std::min(commas + 1, (units.size() + 1) / 2); }

    std::u16string_view units;
    std::size_t commas = 0;
};

constexpr bool IsWhiteSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// The first comma, or the end. Ids are short: to look at eight bytes at a time is quicker than to call something that
// looks at more.
char const* FindComma(char const* begin, char const* end)
{
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    constexpr std::uint64_t kHighBits = 0x80 * kOnes;
    std::uint64_t bytes = 0;
    for (; end - begin >= static_cast<std::ptrdiff_t>(sizeof bytes); begin += sizeof bytes)
    {
        std::memcpy(&bytes, begin, sizeof bytes);
        std::uint64_t const differences = bytes ^ (kOnes * ',');
        // The lowest of these bits is that of the lowest byte that is zero.
        std::uint64_t const zeros = (differences - kOnes) & ~differences & kHighBits;
        if (std::endian::native != std::endian::little && zeros != 0)
            break;
        if (zeros != 0)
            return begin + std::countr_zero(zeros) / 8;
    }
    return std::find(begin, end, ',');
}

// Appends the pieces between commas without the white space around them; empty ones are dropped.
void SplitAtCommas(std::string_view text, std::vector<UTF8String>& pieces)
{
    char const* begin = text.data();
    char const* const end = begin + text.size();
    while (begin < end)
    {
        char const* const comma = FindComma(begin, end);
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
    CountedText const counted(text ? text : u"");
    items.Reserve(items.Size() + counted.MostPieces());
    std::u16string_view rest = counted.units;
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
