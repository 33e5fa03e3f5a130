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
    /// A text about the group; always empty in a scene.
    virtual UTF16String Description() const = 0;
    /// The ids of the members, each once and in document order; owned by the group.
    virtual IdSet const& GeometryItems() const = 0;
};

}  // namespace KVR
