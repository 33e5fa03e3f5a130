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
    virtual unsigned long long ChildCount() const = 0;
    /// A bad index throws std::out_of_range.
    virtual AssemblyFeatureOverrideChildId ChildAt(unsigned long long index) const = 0;
    /// The paths of the occurrences that are overridden.
    virtual void BaseOccPaths(OccurrencePathCollection& paths) const = 0;
};

}  // namespace KVR
