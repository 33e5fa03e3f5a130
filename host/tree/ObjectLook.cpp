#include "host/tree/ObjectLook.h"

#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

class LookTaker final : public ObjectVisitor
{
public:
    void Visit(IFile*) override { Take("IFile"); }
    void Visit(IAssembly*) override { Take("IAssembly"); }
    void Visit(IPart*) override { Take("IPart"); }
    void Visit(IInstance* object) override { Take("IInstance", object->IsVisible()); }
    void Visit(IAnnotationCallout* object) override { Take("IAnnotationCallout", object->IsVisible()); }
    void Visit(IAssemblyFeatureOverride* object) override { Take("IAssemblyFeatureOverride", object->IsVisible()); }
    void Visit(ILayer* object) override { Take("ILayer", object->IsVisible()); }
    void Visit(IView* object) override { Take("IView", object->IsVisible()); }
    void Visit(IBrep* object) override { TakeGeometry("IBrep", object->IsVisible()); }
    void Visit(ICurve* object) override { TakeGeometry("ICurve", object->IsVisible()); }
    void Visit(IExtensionGeometry* object) override { Take("IExtensionGeometry", object->IsVisible()); }
    void Visit(IGeometricSet* object) override { Take("IGeometricSet", object->IsVisible()); }
    void Visit(IPoint* object) override { Take("IPoint", object->IsVisible()); }
    void Visit(IPointCloud* object) override { Take("IPointCloud", object->IsVisible()); }
    void Visit(IPolygonMesh* object) override { TakeGeometry("IPolygonMesh", object->IsVisible()); }
    void Visit(ISketch* object) override { Take("ISketch", object->IsVisible()); }
    void Visit(IWorkAxis* object) override { Take("IWorkAxis", object->IsVisible()); }
    void Visit(IWorkPlane* object) override { Take("IWorkPlane", object->IsVisible()); }
    void Visit(IWorkPoint* object) override { Take("IWorkPoint", object->IsVisible()); }
    void Visit(IAnnotationCalloutElement*) override { Take("IAnnotationCalloutElement"); }
    void Visit(ICamera*) override { Take("ICamera"); }
    void Visit(IGroup*) override { Take("IGroup"); }
    void Visit(ILod*) override { Take("ILod"); }
    void Visit(IMaterialTexture*) override { Take("IMaterialTexture"); }
    void Visit(IRenderStyle*) override { Take("IRenderStyle"); }
    void Visit(IGenericObject*) override { Take("IGenericObject"); }
    void Visit(ICoordSys*) override { Take("ICoordSys"); }

    ObjectLook look;

private:
    void Take(std::string_view kind, std::optional<bool> isVisible = std::nullopt) { look = {kind, isVisible, false}; }
    void TakeGeometry(std::string_view kind, bool isVisible) { look = {kind, isVisible, true}; }
};

}  // namespace

ObjectLook ObjectLook::Of(IObject& object)
{
    LookTaker taker;
    object.AcceptVisitor(&taker);
    return taker.look;
}

}  // namespace KVR
