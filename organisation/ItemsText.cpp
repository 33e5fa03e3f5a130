#include "organisation/ItemsText.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/xml_util/XMLStrUtil.h"
#include "producer/XMLProducerImpl.h"

namespace KVR
{

namespace
{

// A text of a million ids is split piece by piece, so that its pieces never leave the cache before they are kept.
constexpr std::size_t kStretch = 1 << 14;

// Takes a stretch off the front of the text, up to the first comma behind its length.
std::string_view TakeStretch(std::string_view& text)
{
    std::size_t const comma = text.find(',', kStretch);
    std::string_view const stretch = text.substr(0, comma);
    text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
    return stretch;
}

// An empty piece is dropped, so that the text has room for one in two bytes at the most.
std::size_t MostPieces(std::string_view text)
{
    auto const commas = static_cast<std::size_t>(std::count(text.begin(), text.end(), ','));
    return std::min(commas + 1, (text.size() + 1) / 2);
}

}  // namespace

void AddItems(XMLProducerImpl& producer, XMLCh const* text, IdSet& items)
{
    UTF8String const narrow = XMLStrUtil::XMLStrToAStr(text);
    items.Reserve(items.Size() + MostPieces(narrow.View()));
    std::vector<UTF8String> pieces;
    for (std::string_view rest = narrow.View(); !rest.empty();)
    {
        XMLStrUtil::SplitStr(UTF8String(TakeStretch(rest)), ",", pieces);
        for (UTF8String& piece : pieces)
            producer.ApplyIdMapping(piece);
        items.AddAllWithUniquenessCheck(pieces);
    }
}

}  // namespace KVR
