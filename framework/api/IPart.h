#pragma once

#include "framework/api/IComponent.h"
#include "framework/api/TypesafeId.h"

namespace KVR
{

/// A component without instances: geometry, work features and annotation.
class KVR_API IPart : public IComponent
{
public:
    ~IPart() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The id of a child, in document order. An index at or beyond ChildCount throws std::out_of_range.
    virtual PartChildId ChildAt(unsigned long long index) const = 0;
};

}  // namespace KVR
