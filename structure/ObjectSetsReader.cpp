#include "structure/ObjectSetsReader.h"

#include <utility>
#include <vector>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "producer/ElementReaders.h"
#include "readers/Ignored.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

using ReadSet = bool (*)(XMLProducerImpl* producer, DOMNode* node, std::vector<UTF8String>& ids);

void AddIds(std::vector<UTF8String>& ids, IdSet& set)
{
    for (UTF8String& id : ids)
        set.AddWithUniquenessCheck(std::move(id));
}

void ReadInto(XMLProducerImpl* producer, DOMNode* node, ReadSet read, IdSet& set)
{
    std::vector<UTF8String> ids;
    Ignored(read(producer, node, ids));
    AddIds(ids, set);
}

void ReadStylesInto(XMLProducerImpl* producer, DOMNode* node, VitreolAssets& vitreolAssets, IdSet& set)
{
    std::vector<UTF8String> ids;
    Ignored(ReadStyleSet(producer, node, ids, vitreolAssets));
    AddIds(ids, set);
}

}  // namespace

bool ReadObjectSets(XMLProducerImpl* producer, DOMNode* node, AttributeSetIds& sets, VitreolAssets& vitreolAssets)
{
    for (DOMNode* const child : Children(node))
    {
        Match(child,                                                                                      //
              On(Names::GroupSet, [&] { ReadInto(producer, child, &ReadGroupSet, sets.groups); }),        //
              On(Names::LayerSet, [&] { ReadInto(producer, child, &ReadLayerSet, sets.layers); }),        //
              On(Names::TextureSet, [&] { ReadInto(producer, child, &ReadTextureSet, sets.textures); }),  //
              On(Names::StyleSet, [&] { ReadStylesInto(producer, child, vitreolAssets, sets.styles); }),  //
              On(Names::LodSet, [&] { ReadInto(producer, child, &ReadLodSet, sets.lods); }));
    }
    return node != nullptr;
}

bool ReadObjectSetsWithViews(XMLProducerImpl* producer, DOMNode* node, AttributeSetIds& sets,
                             VitreolAssets& vitreolAssets)
{
    Ignored(ReadObjectSets(producer, node, sets, vitreolAssets));
    for (DOMNode* const child : Children(node))
        Match(child, On(Names::CameraSet, [&] { ReadInto(producer, child, &ReadCameraSet, sets.cameras); }));
    for (DOMNode* const child : Children(node))
        Match(child, On(Names::ViewSet, [&] { ReadInto(producer, child, &ReadViewSet, sets.views); }));
    return node != nullptr;
}

}  // namespace KVR
