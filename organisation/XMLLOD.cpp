#include "organisation/XMLLOD.h"

#include <memory>

#include "framework/api/ObjectCollector.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "readers/RegisterObject.h"

namespace KVR
{

XMLLOD::XMLLOD(UTF8String id) : ObjectState(std::move(id), UTF16String()) {}
XMLLOD::~XMLLOD() = default;

bool ReadLodSet(XMLProducerImpl* producer, xercesc::DOMNode* node, std::vector<UTF8String>& ids)
{
    for (xercesc::DOMNode const* const child : Children(node))
    {
        if (!IsNamed(child, Names::ILod))
            continue;
        // Kept: the id stays as written, also where all others are mapped.
        UTF8String const id = XMLStrUtil::XMLStrToAStr(AttributeText(child, Names::ID));
        // Kept: an id that is taken is not even listed, where a camera or view is.
        if (IsTaken(*producer, child, id))
            continue;
        // Kept: a level of detail has no persistent id of a version, whatever the element says.
        auto lod = std::make_unique<XMLLOD>(id);
        ids.push_back(id);
        lod->SetLabel(XMLStrUtil::XMLStrToWStr(AttributeText(child, Names::Label)));
        lod->SetDescription(XMLStrUtil::XMLStrToWStr(AttributeText(child, Names::Description)));
        Register(*producer, child, std::move(lod));
    }
    return node != nullptr;
}

}  // namespace KVR
