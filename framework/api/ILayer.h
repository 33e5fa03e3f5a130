#pragma once

#include "framework/api/IObject.h"
#include "framework/api/Mixins.h"

namespace KVR
{

/// A numbered bucket of objects with a visibility of its own. Its members are ids; nobody checks that they exist.
class KVR_API ILayer : public IObject, public IVisible
{
public:
    ~ILayer() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    virtual UTF16String Description() const = 0;
    virtual int LayerNumber() const = 0;
    /// The members, owned by the layer.
    virtual IdSet const& GeometryItems() const = 0;
    /// The styles, owned by the layer.
    virtual IdSet const& Styles() const = 0;
};

}  // namespace KVR
