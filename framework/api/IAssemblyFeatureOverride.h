#pragma once

#include "framework/api/IObject.h"
#include "framework/api/Mixins.h"
#include "framework/api/TypesafeId.h"

namespace KVR
{

class OccurrencePathCollection;

/// Bodies and meshes of an assembly that stand for occurrences below it.
class KVR_API IAssemblyFeatureOverride : public IObject, public IVisible
{
public:
    ~IAssemblyFeatureOverride() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The number of bodies and meshes; 0 when there are none.
    virtual unsigned long long ChildCount() const = 0;
    /// The id of a body or mesh, in document order. A bad index throws std::out_of_range.
    virtual AssemblyFeatureOverrideChildId ChildAt(unsigned long long index) const = 0;
    /// Replaces the collection by the paths of the occurrences that are overridden, in document order, repeats
    /// included; the ids in them stay as the scene has them.
    virtual void BaseOccPaths(OccurrencePathCollection& paths) const = 0;
};

}  // namespace KVR
