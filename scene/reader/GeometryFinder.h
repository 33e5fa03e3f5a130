#pragma once

#include "framework/api/IdSet.h"
#include "framework/api/ObjectVisitor.h"
#include "scene/SceneComponent.h"

namespace KVR
{

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

    SceneGeometry geometry;
    IdSet styles;

private:
    template <class Object>
    void Dress(Object* object, char const* name, GeometryKind kind);
};

}  // namespace KVR
