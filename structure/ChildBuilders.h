#pragma once

// Builders for the rows of child sets, each for every kind of owner.

#include "annotation/XMLAnnotationCallout.h"
#include "framework/api/ObjectCollector.h"
#include "geometry/XMLCurve.h"
#include "geometry/XMLSketch.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "readers/ChildSet.h"
#include "readers/ReferenceReader.h"
#include "readers/RegisterObject.h"

namespace KVR
{

/// Lists an object that was read and registered; false for null.
template <class ChildIdT>
bool AddChild(IObject* object, std::vector<ChildIdT>& children)
{
    if (object)
        children.push_back(ChildIdT::Create(object));
    return object != nullptr;
}

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
    UTF8String id;
    context.producer->sideFileIndex->ReadDeferredStores();
    if (!context.curveStore.empty() && ReadCurveFromStore(context.producer, node, context.curveStore, id))
    {
        children.push_back(ChildIdT::Create(context.producer->objectCollector->QueryObject(id)));
        return true;
    }
    if (context.curveEntities.empty())
    {
        TellObserver(&ReadObserver::ElementDropped, node, DropReason::kNoRecord);
        return true;
    }
    return AddChild(ReadAndRegister<XMLCurve>(context.producer, node, context.curveEntities), children);
}

/// An object that needs nothing but its element: points, point clouds and work features.
template <class ChildIdT, class Object>
bool BuildObject(ChildContext const& context, xercesc::DOMNode* node, std::vector<ChildIdT>& children)
{
    return AddChild(ReadAndRegister<Object>(context.producer, node), children);
}

/// "ISketch". One of no known type fails, and leaves its points and curves registered.
template <class ChildIdT>
bool BuildSketch(ChildContext const& context, xercesc::DOMNode* node, std::vector<ChildIdT>& children)
{
    return AddChild(ReadAndRegister<XMLSketch>(context.producer, node, context.curveEntities), children);
}

/// "IGeometricSet" and "IExtensionGeometry".
template <class ChildIdT, class Bundle>
bool BuildBundle(ChildContext const& context, xercesc::DOMNode* node, std::vector<ChildIdT>& children)
{
    return AddChild(ReadAndRegister<Bundle>(context.producer, node, context.bodyEntities, context.curveEntities,
                                            context.meshStore, context.curveStore),
                    children);
}

template <class ChildIdT>
bool BuildAnnotationCallout(ChildContext const& context, xercesc::DOMNode* node, std::vector<ChildIdT>& children)
{
    return AddChild(ReadAndRegister<XMLAnnotationCallout>(context.producer, node, context.curveEntities,
                                                          context.meshStore, context.curveStore),
                    children);
}

}  // namespace KVR
