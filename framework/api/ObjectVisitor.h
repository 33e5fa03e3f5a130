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
    /// An object of a kind without an interface; no scene has it.
    virtual void Visit(IGenericObject* object);
    /// A saved look at the product.
    virtual void Visit(IView* object);
    /// A camera, a section camera included.
    virtual void Visit(ICamera* object);
    /// Geometry that stands for occurrences below an assembly.
    virtual void Visit(IAssemblyFeatureOverride* object);
    /// What a note is drawn with.
    virtual void Visit(IAnnotationCalloutElement* object);
    /// A note.
    virtual void Visit(IAnnotationCallout* object);
    /// A texture.
    virtual void Visit(IMaterialTexture* object);
    /// Geometry of an extension.
    virtual void Visit(IExtensionGeometry* object);
    /// Many points.
    virtual void Visit(IPointCloud* object);
    /// A level of detail.
    virtual void Visit(ILod* object);
    /// A mesh.
    virtual void Visit(IPolygonMesh* object);
    /// A coordinate system; no scene has it.
    virtual void Visit(ICoordSys* object);
    /// A plane of construction.
    virtual void Visit(IWorkPlane* object);
    /// An axis of construction.
    virtual void Visit(IWorkAxis* object);
    /// A point of construction.
    virtual void Visit(IWorkPoint* object);
    /// Curves and points drawn together.
    virtual void Visit(ISketch* object);
    /// A free-standing curve.
    virtual void Visit(ICurve* object);
    /// One point.
    virtual void Visit(IPoint* object);
    /// A style, one of the material library included.
    virtual void Visit(IRenderStyle* object);
    /// A named list of objects.
    virtual void Visit(IGroup* object);
    /// A component or file that is placed.
    virtual void Visit(IInstance* object);
    /// A component of components.
    virtual void Visit(IAssembly* object);
    /// A design file.
    virtual void Visit(IFile* object);
    /// A component without instances.
    virtual void Visit(IPart* object);
    /// A named bundle of geometry.
    virtual void Visit(IGeometricSet* object);
    /// A numbered bucket of objects.
    virtual void Visit(ILayer* object);
    /// A body.
    virtual void Visit(IBrep* object);
};

}  // namespace KVR
