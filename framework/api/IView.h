#pragma once

#include "framework/api/IObject.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/Mixins.h"

namespace KVR
{

/// A saved look at the product: occurrences with visibility, transform and styles of their own, and cameras. A bad
/// index throws std::out_of_range.
class KVR_API IView : public IObject, public IVisible
{
public:
    ~IView() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    virtual bool IsActive() const = 0;
    virtual unsigned long long ViewMemberCount() const = 0;
    virtual IdSet OccurrencePathAt(unsigned long long index) const = 0;
    virtual bool EntityVisibilityAt(unsigned long long index) const = 0;
    virtual Matrix3d EntityTransformAt(unsigned long long index) const = 0;
    virtual IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const = 0;
    virtual IdSet EntityStylesAt(unsigned long long index) const = 0;
    virtual IdSet CameraSet() const = 0;
};

}  // namespace KVR
