#pragma once

#include "framework/api/IGeometry.h"

namespace KVR
{

class BODY;
class IBodyData;

/// A boundary representation: a body of the geometry kernel with what the scene says of it. A body of a scene reports
/// no length unit: it is in that of its component.
class KVR_API IBrep : public IGeometry, public ISubEntityStyles, public ISubObjectPersistentIds
{
public:
    enum ProducerGeometryTypeEnum : int
    {
        kProducerGeometryType_Unknown = 0,
        kProducerGeometryType_BrepMixed = 1,
        kProducerGeometryType_BrepSolid = 2,
        kProducerGeometryType_BrepSheet = 3,
        kProducerGeometryType_Surface = 4,
        kProducerGeometryType_BrepWire = 5,
        kProducerGeometryType_Curve = 6
    };

    enum BrepTypeEnum : int
    {
        kBrepType_Unknown = 0,
        kBrepType_Mixed = 1,
        kBrepType_Solid = 2,
        kBrepType_Sheet = 3,
        kBrepType_Wire = 4
    };

    ~IBrep() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The body through a data interface instead of the kernel; null for every body of a scene.
    virtual IBodyData* BodyDI() const = 0;
    /// What kind of geometry the scene says it was; a solid when it does not say, or says something else.
    virtual ProducerGeometryTypeEnum SrcGeomType() const = 0;
    /// What kind of geometry the body is, told by its shapes; unknown without a body.
    virtual BrepTypeEnum BrepType_ex() const = 0;
    /// The kernel's body, lent by the object and valid until it ends or the body is detached; null when the scene had
    /// none.
    virtual BODY* Body() const = 0;
};

}  // namespace KVR
