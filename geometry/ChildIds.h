#pragma once

// Child sets of owners that keep the ids of their children and nothing else.

#include <span>
#include <vector>

#include "framework/api/IdSet.h"
#include "readers/ChildSet.h"
#include "readers/RegisterObject.h"

namespace KVR
{

using ChildIdRow = ChildRow<UTF8String>;

/// Reads a set by the owner's rows; its ids join those that the owner has already, each once.
[[nodiscard]] ChildSetEnd ReadChildIds(std::span<ChildIdRow const> rows, ChildContext const& context,
                                       xercesc::DOMNode const* node, IdSet& children);

// Builders for the rows.

/// "Child": a reference to an object that was read before. One that finds nothing adds nothing and is no failure.
bool AddChildRef(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids);

/// "IBrep": a body object; never fails.
bool AddBrep(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids);

/// "IPolygonMesh": a mesh that a store built; false for one that none built.
bool AddPolygonMesh(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids);

/// "ICurve": a curve that a store built, and one that the kernel made. Passed over when there are neither.
bool AddCurve(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids);

/// "ICurve" for an owner that takes curves of the kernel alone.
bool AddKernelCurve(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids);

/// An object that needs nothing but its element.
template <class Object>
bool AddObject(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids)
{
    Object const* const object = ReadAndRegister<Object>(context.producer, node);
    if (!object)
        return false;
    ids.push_back(object->Id());
    return true;
}

}  // namespace KVR
