#include "readers/ChangeKeyReader.h"

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR
{

bool ReadChangeKey(xercesc::DOMNode* node, XMLCh const*& slot)
{
    if (!IsNamed(node, Names::ChangeKey))
        return false;
    slot = TextContent(node);
    return true;
}

}  // namespace KVR
