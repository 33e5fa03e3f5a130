#pragma once

// Builders for the rows of child sets, each for every kind of owner.

#include <memory>

#include "framework/api/ObjectCollector.h"
#include "geometry/XMLCurve.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "readers/ReferenceReader.h"
#include "structure/ChildSet.h"

namespace KVR
{

/// "Child": a reference to an object that was read before. One that finds nothing adds nothing and is no failure.
template <class ChildIdT>
bool BuildChildRef(ChildContext const& context, xercesc::DOMNode* node, std::vector<ChildIdT>& children)
{
    UTF8String id;
    if (ReadChildRef(context.producer, node, id))
        children.push_back(ChildIdT::Create(context.producer->objectCollector->QueryObject(id)));
    return true;
}

/// "IBrep": a body object.
template <class ChildIdT>
bool BuildBrep(ChildContext const& context, xercesc::DOMNode* node, std::vector<ChildIdT>& children)
{
    UTF8String id;
    if (!ReadBrep(context.producer, node, context.bodyEntities, id))
        return false;
    children.push_back(ChildIdT::Create(context.producer->objectCollector->QueryObject(id)));
    return true;
}

/// "IPolygonMesh": a mesh that a store built.
template <class ChildIdT>
bool BuildPolygonMesh(ChildContext const& context, xercesc::DOMNode* node, std::vector<ChildIdT>& children)
{
    UTF8String id;
    if (!ReadPolygonMesh(context.producer, node, context.meshStore, id))
        return false;
    children.push_back(ChildIdT::Create(context.producer->objectCollector->QueryObject(id)));
    return true;
}

/// "ICurve": a curve that a store built, or else one that the kernel made.
template <class ChildIdT>
bool BuildCurve(ChildContext const& context, xercesc::DOMNode* node, std::vector<ChildIdT>& children)
{
    ObjectCollector& collector = *context.producer->objectCollector;
    UTF8String id;
    if (!context.curveStore.empty() && ReadCurveFromStore(context.producer, node, context.curveStore, id))
    {
        children.push_back(ChildIdT::Create(collector.QueryObject(id)));
        return true;
    }
    if (context.curveEntities.empty())
        return true;
    auto curve = std::make_unique<XMLCurve>(context.producer);
    if (!curve->ReadFromXML(node, context.curveEntities))
        return false;
    children.push_back(ChildIdT::Create(curve.get()));
    collector.AddObject(curve.release());
    return true;
}

}  // namespace KVR
