#pragma once

#include "framework/api/IComponent.h"
#include "framework/api/TypesafeId.h"

namespace KVR
{

class Matrix3d;

/// A component of components: instances, and geometry of its own. Cross-level values override those of objects further
/// down, addressed by the occurrence path from this assembly; their lists stand in document order, repeats included.
class KVR_API IAssembly : public IComponent
{
public:
    ~IAssembly() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// An index at or beyond ChildCount throws GeneralException.
    virtual AssemblyChildId ChildAt(unsigned long long index) const = 0;
    virtual unsigned long long CrossLevelVisibilityCount() const = 0;
    /// A bad index throws std::out_of_range, here and in the next two.
    virtual void CrossLevelVisibilityAt(unsigned long long index, IdSet& path, bool& visible) const = 0;
    virtual unsigned long long CrossLevelStyleCount() const = 0;
    virtual void CrossLevelStyleAt(unsigned long long index, IdSet& path, IdSet& styles) const = 0;
    virtual unsigned long long CrossLevelTransformCount() const = 0;
    virtual void CrossLevelTransformAt(unsigned long long index, IdSet& path, Matrix3d& transform) const = 0;
};

}  // namespace KVR
