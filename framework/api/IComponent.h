#pragma once

#include "framework/api/FileProperties.h"
#include "framework/api/IObject.h"
#include "framework/api/Mixins.h"

namespace KVR
{

/// What an instance can place: an assembly or a part.
class KVR_API IComponent : public IObject, public IAttributeSets, public IUnit
{
public:
    ~IComponent() override;
    /// What the design file of the component says about itself, owned by the component; null when there is nothing.
    virtual KVR::FileProperties* FileProperties() const = 0;
    /// The ids of the component's styles, in document order; empty when there are none.
    virtual IdSet Styles() const = 0;
    /// Whether the component alone stands under the root; false when the scene does not say.
    virtual bool IsSingleUnderRoot() const = 0;
    /// The number of children, for ChildAt of the assembly or part.
    virtual unsigned long long ChildCount() const = 0;
};

}  // namespace KVR
