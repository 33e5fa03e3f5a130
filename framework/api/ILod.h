#pragma once

#include "framework/api/IObject.h"

namespace KVR
{

/// A level of detail that meshes refer to.
class KVR_API ILod : public IObject
{
public:
    ~ILod() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// A text about the level of detail; empty when there is none.
    virtual UTF16String Description() const = 0;
};

}  // namespace KVR
