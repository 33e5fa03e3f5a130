#pragma once

#include "framework/api/IObject.h"
#include "framework/api/Mixins.h"

namespace KVR
{

/// An object that has geometry. Lengths are in its length unit; tolerances are -1.0 where the object has none.
class KVR_API IGeometry : public IObject, public ITransformable, public IUnit, public IVisible
{
public:
    ~IGeometry() override;
    virtual double AngularTolerance() const = 0;
    virtual double LinearTolerance() const = 0;
    virtual double ParamTolerance() const = 0;
    /// The resolved visibility; that of IsVisible here.
    virtual bool IsNetVisible() const;
    /// The ids of the object's styles, the strongest first; empty here.
    virtual IdSet Styles() const;
    /// The resolved styles; empty here.
    virtual IdSet NetStyles() const;
};

}  // namespace KVR
