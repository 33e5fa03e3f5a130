#include "geometry/ChildIds.h"

#include <utility>

#include "geometry/XMLCurve.h"
#include "producer/ElementReaders.h"
#include "readers/ReferenceReader.h"

namespace KVR
{

ChildSetEnd ReadChildIds(std::span<ChildIdRow const> rows, ChildContext const& context, xercesc::DOMNode const* node,
                         IdSet& children)
{
    std::vector<UTF8String> ids;
    ChildSetEnd const end = ReadChildSet(rows, context, node, ids);
    for (UTF8String& id : ids)
        children.AddWithUniquenessCheck(std::move(id));
    return end;
}

bool AddChildRef(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids)
{
    UTF8String id;
    if (ReadChildRef(context.producer, node, id))
        ids.push_back(std::move(id));
    return true;
}

bool AddBrep(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids)
{
    UTF8String id;
    if (!ReadBrep(context.producer, node, context.bodyEntities, id))
        return false;
    ids.push_back(std::move(id));
    return true;
}

bool AddPolygonMesh(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids)
{
    UTF8String id;
    if (!ReadPolygonMesh(context.producer, node, context.meshStore, id))
        return false;
    ids.push_back(std::move(id));
    return true;
}

bool AddCurve(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids)
{
    UTF8String id;
    context.producer->sideFileIndex->ReadDeferredStores();
    if (!context.curveStore.empty() && ReadCurveFromStore(context.producer, node, context.curveStore, id))
        ids.push_back(std::move(id));
    else if (context.curveEntities.empty())
        TellObserver(&ReadObserver::ElementDropped, node, DropReason::kNoRecord);
    // Kept: both ways are gone, and nobody asks whether the first has registered the id already.
    return context.curveEntities.empty() || AddKernelCurve(context, node, ids);
}

bool AddKernelCurve(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids)
{
    context.producer->sideFileIndex->ReadDeferredStores();
    XMLCurve const* const curve = ReadAndRegister<XMLCurve>(context.producer, node, context.curveEntities);
    if (!curve)
        return false;
    ids.push_back(curve->Id());
    return true;
}

}  // namespace KVR
