#pragma once

#include <memory>

#include "framework/api/ObjectCollector.h"
#include "geometry/ChildIds.h"
#include "geometry/GeometryBundleState.h"

namespace KVR
{

/// A bundle of geometry within another one; too deep a one is dropped, which is no failure.
template <class Bundle>
bool AddBundle(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids)
{
    if (context.depth >= kDeepestBundle)
        return true;
    auto bundle = std::make_unique<Bundle>(context.producer, context.depth);
    if (!bundle->ReadFromXML(node, context.bodyEntities, context.curveEntities, context.meshStore, context.curveStore))
        return false;
    ids.push_back(bundle->Id());
    context.producer->objectCollector->AddObject(bundle.release());
    return true;
}

}  // namespace KVR
