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
    /// A text about the layer; empty when there is none.
    virtual UTF16String Description() const = 0;
    /// The layer's number; 0 when it is absent or no integer.
    virtual int LayerNumber() const = 0;
    /// The ids of the members, each once and in document order; owned by the layer.
    virtual IdSet const& GeometryItems() const = 0;
    /// The ids of the layer's styles, in document order; owned by the layer.
    virtual IdSet const& Styles() const = 0;
};

}  // namespace KVR
