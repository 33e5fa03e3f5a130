#pragma once

#include "framework/api/IObject.h"
#include "framework/api/Mixins.h"
#include "framework/api/TypesafeId.h"

namespace KVR
{

/// A component or file placed in an assembly.
class KVR_API IInstance : public ITransformable, public IObject, public IUnit, public IVisible
{
public:
    ~IInstance() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The id of the component or file that is placed.
    virtual InstanceChildId TargetId() const = 0;
    /// The resolved visibility.
    virtual bool IsNetVisible() const = 0;
    virtual IdSet Styles() const = 0;
    /// The resolved styles.
    virtual IdSet NetStyles() const = 0;
    virtual void SetLengthUnit(UnitTypeEnum unit) = 0;
    virtual void SetDisplayAngleUnit(UnitTypeEnum unit) = 0;
    virtual void SetDisplayLengthUnit(UnitTypeEnum unit) = 0;
};

}  // namespace KVR
