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
    /// The id of a child, in document order. An index at or beyond ChildCount throws GeneralException.
    virtual AssemblyChildId ChildAt(unsigned long long index) const = 0;
    /// The number of visibilities that are overridden; 0 when there are none.
    virtual unsigned long long CrossLevelVisibilityCount() const = 0;
    /// The path of the object and whether it is shown. A bad index throws std::out_of_range and leaves the outputs
    /// alone.
    virtual void CrossLevelVisibilityAt(unsigned long long index, IdSet& path, bool& visible) const = 0;
    /// The number of objects whose styles are overridden; 0 when there are none.
    virtual unsigned long long CrossLevelStyleCount() const = 0;
    /// The path of the object and the ids of its styles, perhaps none. A bad index throws std::out_of_range and leaves
    /// the outputs alone.
    virtual void CrossLevelStyleAt(unsigned long long index, IdSet& path, IdSet& styles) const = 0;
    /// The number of transforms that are overridden; 0 when there are none.
    virtual unsigned long long CrossLevelTransformCount() const = 0;
    /// The path of the object and its transform, the identity for a text that is none. A bad index throws
    /// std::out_of_range and leaves the outputs alone.
    virtual void CrossLevelTransformAt(unsigned long long index, IdSet& path, Matrix3d& transform) const = 0;
};

}  // namespace KVR
