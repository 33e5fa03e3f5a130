#include "exchange/export/GeometryPlace.h"
#include "framework/api/LengthUnits.h"

#include "framework/api/IObject.h"
#include "framework/api/Mixins.h"

namespace KVR
{

Matrix Scaling(double factor)
{
    Matrix scaling = kIdentity;
    scaling[0] = scaling[5] = scaling[10] = factor;
    return scaling;
}

Matrix PlaceOf(ModelGeometry const& geometry, ModelComponent const& component, OccurrenceState const& state)
{
    Matrix const& own = state.TransformOf(geometry);
    UnitTypeEnum unit = kUnitType_Unknown;
    auto const* const measured = dynamic_cast<IUnit const*>(geometry.object);
    double const metres = measured && measured->LengthUnit(unit) == kIsValueSpecified_Yes ? MetresOf(unit) : 0.0;
    // Also the place is in the geometry's own unit.
    return metres > 0.0 && metres != component.metresPerUnit ? Product(Scaling(metres / component.metresPerUnit), own)
                                                             : own;
}

}  // namespace KVR
