#include "readers/ChangeKeyReader.h"

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR
{

bool ReadChangeKey(xercesc::DOMNode* node, ChangeKeyText& changeKey)
{
    if (!IsNamed(node, Names::ChangeKey))
        return false;
    TellObserver(&ReadObserver::LastCounts, node);
    changeKey = ChangeKeyText(TextContent(node));
    return true;
}

}  // namespace KVR
