#pragma once

#include "framework/api/Export.h"

namespace KVR
{

class IAnnotationCallout;
class IAnnotationCalloutElement;
class IAssembly;
class IAssemblyFeatureOverride;
class IBrep;
class ICamera;
class ICoordSys;
class ICurve;
class IExtensionGeometry;
class IFile;
class IGenericObject;
class IGeometricSet;
class IGroup;
class IInstance;
class ILayer;
class ILod;
class IMaterialTexture;
class IPart;
class IPoint;
class IPointCloud;
class IPolygonMesh;
class IRenderStyle;
class ISketch;
class IView;
class IWorkAxis;
class IWorkPlane;
class IWorkPoint;

/// Told what kind of object it visits. Every overload has no effect here. A section camera visits as a camera, a style
/// from the material library as a style.
class KVR_API ObjectVisitor
{
public:
    virtual ~ObjectVisitor();
    virtual void Visit(IGenericObject* object);
    virtual void Visit(IView* object);
    virtual void Visit(ICamera* object);
    virtual void Visit(IAssemblyFeatureOverride* object);
    virtual void Visit(IAnnotationCalloutElement* object);
    virtual void Visit(IAnnotationCallout* object);
    virtual void Visit(IMaterialTexture* object);
    virtual void Visit(IExtensionGeometry* object);
    virtual void Visit(IPointCloud* object);
    virtual void Visit(ILod* object);
    virtual void Visit(IPolygonMesh* object);
    virtual void Visit(ICoordSys* object);
    virtual void Visit(IWorkPlane* object);
    virtual void Visit(IWorkAxis* object);
    virtual void Visit(IWorkPoint* object);
    virtual void Visit(ISketch* object);
    virtual void Visit(ICurve* object);
    virtual void Visit(IPoint* object);
    virtual void Visit(IRenderStyle* object);
    virtual void Visit(IGroup* object);
    virtual void Visit(IInstance* object);
    virtual void Visit(IAssembly* object);
    virtual void Visit(IFile* object);
    virtual void Visit(IPart* object);
    virtual void Visit(IGeometricSet* object);
    virtual void Visit(ILayer* object);
    virtual void Visit(IBrep* object);
};

}  // namespace KVR
