#pragma once

#include "framework/api/IObject.h"

namespace KVR
{

/// A named list of objects. Its members are ids; nobody checks that they exist.
class KVR_API IGroup : public IObject
{
public:
    ~IGroup() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    virtual UTF16String Description() const = 0;
    /// The members, owned by the group.
    virtual IdSet const& GeometryItems() const = 0;
};

}  // namespace KVR
