#pragma once

#include "exchange/export/SceneModel.h"
#include "framework/api/IdSet.h"
#include "framework/api/ObjectVisitor.h"

namespace KVR
{

class Matrix3d;

/// Finds out whether an object is geometry, and of which kind. It is none when the name of its class stays empty.
class GeometryFinder final : public ObjectVisitor
{
public:
    using ObjectVisitor::Visit;
    void Visit(IBrep* object) override;
    void Visit(IPolygonMesh* object) override;
    void Visit(ICurve* object) override;
    void Visit(IPoint* object) override;
    void Visit(IPointCloud* object) override;
    void Visit(ISketch* object) override;
    void Visit(IWorkAxis* object) override;
    void Visit(IWorkPlane* object) override;
    void Visit(IWorkPoint* object) override;
    void Visit(IAnnotationCallout* object) override;

    ModelGeometry geometry;
    IdSet styles;

private:
    template <class Object>
    void Dress(Object* object, char const* name, GeometryKind kind);
};

/// The identity for null, and for what cannot place anything: a transform with elements that are no numbers or larger
/// than any place.
Matrix PlaceOf(Matrix3d const* transform);

}  // namespace KVR
