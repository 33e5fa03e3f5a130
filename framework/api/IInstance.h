#pragma once

#include "framework/api/IObject.h"
#include "framework/api/Mixins.h"
#include "framework/api/TypesafeId.h"

namespace KVR
{

/// A component or file placed in an assembly. Its transform is never null and goes from the target to the assembly.
class KVR_API IInstance : public ITransformable, public IObject, public IUnit, public IVisible
{
public:
    ~IInstance() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The id of the component or file that is placed; never empty for an instance that a scene serves.
    virtual InstanceChildId TargetId() const = 0;
    /// The visibility as the scene resolved it, from what stands above the instance too; false when the scene does not
    /// say.
    virtual bool IsNetVisible() const = 0;
    /// The ids of the instance's styles, in document order; empty when there are none.
    virtual IdSet Styles() const = 0;
    /// The ids of the styles as the scene resolved them, in document order; empty when there are none.
    virtual IdSet NetStyles() const = 0;
    /// Sets what LengthUnit answers; nothing is converted.
    virtual void SetLengthUnit(UnitTypeEnum unit) = 0;
    /// Sets what DisplayAngleUnit answers.
    virtual void SetDisplayAngleUnit(UnitTypeEnum unit) = 0;
    /// Sets what DisplayLengthUnit answers.
    virtual void SetDisplayLengthUnit(UnitTypeEnum unit) = 0;
};

}  // namespace KVR
