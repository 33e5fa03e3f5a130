#include "structure/ObjectSetsReader.h"

#include "readers/Ignored.h"

namespace KVR
{

bool ReadObjectSets(XMLProducerImpl*, xercesc::DOMNode* node, AttributeSetIds&, VitreolAssets&)
{
    return node != nullptr;
}

bool ReadObjectSetsWithViews(XMLProducerImpl* producer, xercesc::DOMNode* node, AttributeSetIds& sets,
                             VitreolAssets& vitreolAssets)
{
    Ignored(ReadObjectSets(producer, node, sets, vitreolAssets));
    return node != nullptr;
}

}  // namespace KVR
