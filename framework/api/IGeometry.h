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
    /// The angle below which two directions are one, as the scene has it (authoring writes radians); -1.0 when there is
    /// none or the object's kind keeps none.
    virtual double AngularTolerance() const = 0;
    /// The distance below which two points are one, in the object's length unit; -1.0 when there is none.
    virtual double LinearTolerance() const = 0;
    /// The difference below which two parameters of a curve or surface are one, a number without a unit; -1.0 when
    /// there is none.
    virtual double ParamTolerance() const = 0;
    /// The visibility as the scene resolved it, from what stands above the object too; that of IsVisible here.
    virtual bool IsNetVisible() const;
    /// The ids of the object's styles, in document order; empty here. `kvr export` takes the first.
    virtual IdSet Styles() const;
    /// The ids of the styles as the scene resolved them, in document order; empty here.
    virtual IdSet NetStyles() const;
};

}  // namespace KVR
