#include "organisation/ItemsText.h"

#include <utility>
#include <vector>

#include "framework/xml_util/XMLStrUtil.h"
#include "producer/XMLProducerImpl.h"

namespace KVR
{

void AddItems(XMLProducerImpl& producer, XMLCh const* text, IdSet& items)
{
    std::vector<UTF8String> pieces;
    XMLStrUtil::SplitStr(XMLStrUtil::XMLStrToAStr(text).Trim(' '), ",", pieces);
    for (UTF8String& piece : pieces)
    {
        producer.ApplyIdMapping(piece);
        items.AddWithUniquenessCheck(std::move(piece));
    }
}

}  // namespace KVR
