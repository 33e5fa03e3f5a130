#include "scene/SceneObjectRef.h"

#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

class KindFinder final : public ObjectVisitor
{
public:
    void Visit(IFile*) override { kind = "IFile"; }
    void Visit(IAssembly*) override { kind = "IAssembly"; }
    void Visit(IPart*) override { kind = "IPart"; }
    void Visit(IInstance*) override { kind = "IInstance"; }
    void Visit(IAnnotationCallout*) override { kind = "IAnnotationCallout"; }
    void Visit(IAnnotationCalloutElement*) override { kind = "IAnnotationCalloutElement"; }
    void Visit(IAssemblyFeatureOverride*) override { kind = "IAssemblyFeatureOverride"; }
    void Visit(ILayer*) override { kind = "ILayer"; }
    void Visit(IView*) override { kind = "IView"; }
    void Visit(IBrep*) override { kind = "IBrep"; }
    void Visit(ICurve*) override { kind = "ICurve"; }
    void Visit(IExtensionGeometry*) override { kind = "IExtensionGeometry"; }
    void Visit(IGeometricSet*) override { kind = "IGeometricSet"; }
    void Visit(IPoint*) override { kind = "IPoint"; }
    void Visit(IPointCloud*) override { kind = "IPointCloud"; }
    void Visit(IPolygonMesh*) override { kind = "IPolygonMesh"; }
    void Visit(ISketch*) override { kind = "ISketch"; }
    void Visit(IWorkAxis*) override { kind = "IWorkAxis"; }
    void Visit(IWorkPlane*) override { kind = "IWorkPlane"; }
    void Visit(IWorkPoint*) override { kind = "IWorkPoint"; }
    void Visit(ICamera*) override { kind = "ICamera"; }
    void Visit(IGroup*) override { kind = "IGroup"; }
    void Visit(ILod*) override { kind = "ILod"; }
    void Visit(IMaterialTexture*) override { kind = "IMaterialTexture"; }
    void Visit(IRenderStyle*) override { kind = "IRenderStyle"; }
    void Visit(IGenericObject*) override { kind = "IGenericObject"; }
    void Visit(ICoordSys*) override { kind = "ICoordSys"; }

    std::string_view kind;
};

}  // namespace

std::string_view SceneObjectRef::KindOf(IObject& object)
{
    KindFinder finder;
    object.AcceptVisitor(&finder);
    return finder.kind;
}

SceneObjectRef SceneObjectRef::Of(IProducer& producer, UTF8String const& id)
{
    IObject* const object = id.IsEmpty() ? nullptr : producer.Load(id);
    if (!object)
        return {"missing", id, {}};
    return {KindOf(*object), id, object->Label()};
}

}  // namespace KVR
