#include "framework/api/ObjectCollector.h"
#include "framework/api/kvr_api.h"

// What is visited is registered, whatever it is.

namespace KVR
{

void ObjectCollector::Visit(IGenericObject* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IView* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ICamera* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IAssemblyFeatureOverride* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IAnnotationCalloutElement* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IAnnotationCallout* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IMaterialTexture* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IExtensionGeometry* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IPointCloud* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ILod* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IPolygonMesh* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ICoordSys* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IWorkPlane* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IWorkAxis* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IWorkPoint* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ISketch* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ICurve* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IPoint* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IRenderStyle* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IGroup* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IInstance* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IAssembly* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IFile* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IPart* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IGeometricSet* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ILayer* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IBrep* object)
{
    AddObject(object);
}

}  // namespace KVR
