#pragma once

#include <memory>
#include <utility>

#include "geometry/ChildIds.h"
#include "geometry/GeometryBundleState.h"
#include "readers/RegisterObject.h"

namespace KVR
{

/// A bundle of geometry within another one; too deep a one is dropped, which is no failure.
template <class Bundle>
bool AddBundle(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids)
{
    if (context.depth >= kDeepestBundle)
    {
        TellObserver(&ReadObserver::ElementDropped, node, DropReason::kTooDeep);
        return true;
    }
    auto bundle = std::make_unique<Bundle>(context.producer, context.depth);
    if (!bundle->ReadFromXML(node, context.bodyEntities, context.curveEntities, context.meshStore, context.curveStore))
    {
        TellObserver(&ReadObserver::ElementDropped, node, DropReason::kRefused);
        return false;
    }
    ids.push_back(bundle->Id());
    Register(*context.producer, node, std::move(bundle));
    return true;
}

}  // namespace KVR
