#pragma once

#include "framework/api/IObject.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/Mixins.h"

namespace KVR
{

/// A saved look at the product: members, each an occurrence with visibility, transform and styles of its own, and
/// cameras. Of several members for one path a scene keeps the last.
class KVR_API IView : public IObject, public IVisible
{
public:
    ~IView() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// Whether the view is the active one; true when the scene does not say.
    virtual bool IsActive() const = 0;
    /// The number of members; 0 when there are none.
    virtual unsigned long long ViewMemberCount() const = 0;
    /// The ids on the way down to the member's object, as the scene has them; empty when it gives none. A bad index
    /// throws std::out_of_range.
    virtual IdSet OccurrencePathAt(unsigned long long index) const = 0;
    /// Whether the view shows the member; false when the scene does not say. A bad index throws std::out_of_range.
    virtual bool EntityVisibilityAt(unsigned long long index) const = 0;
    /// The member's transform in this view, its translation in the view's length unit; the identity when the scene
    /// gives none. A bad index throws std::out_of_range.
    virtual Matrix3d EntityTransformAt(unsigned long long index) const = 0;
    /// The unit of the members' transforms; not specified when the scene has no "Unit", kUnitType_Unknown for a text
    /// that is no unit.
    virtual IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const = 0;
    /// The ids of the styles that the member has in this view, in document order; empty when there are none. A bad
    /// index throws std::out_of_range.
    virtual IdSet EntityStylesAt(unsigned long long index) const = 0;
    /// The ids of the view's cameras; empty when there are none. Nobody checks that they exist.
    virtual IdSet CameraSet() const = 0;
};

}  // namespace KVR
