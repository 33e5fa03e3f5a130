// The out-of-line members of the object interfaces: destructors, which anchor the type information, and the dispatch
// of AcceptVisitor.

#include "framework/api/IAnnotationCallout.h"
#include "framework/api/IAssembly.h"
#include "framework/api/IAssemblyFeatureOverride.h"
#include "framework/api/IBrep.h"
#include "framework/api/ICamera.h"
#include "framework/api/ICurve.h"
#include "framework/api/IExtensionGeometry.h"
#include "framework/api/IFile.h"
#include "framework/api/IGenericObject.h"
#include "framework/api/IGeometricSet.h"
#include "framework/api/IGroup.h"
#include "framework/api/IInstance.h"
#include "framework/api/ILayer.h"
#include "framework/api/ILod.h"
#include "framework/api/IMaterialTexture.h"
#include "framework/api/IPart.h"
#include "framework/api/IPoint.h"
#include "framework/api/IPointCloud.h"
#include "framework/api/IPolygonMesh.h"
#include "framework/api/IProducer.h"
#include "framework/api/IRenderStyle.h"
#include "framework/api/ISketch.h"
#include "framework/api/IText.h"
#include "framework/api/IUniverse.h"
#include "framework/api/IView.h"
#include "framework/api/IWorkFeature.h"
#include "framework/api/ObjectVisitor.h"

namespace KVR
{

IObject::IObject() = default;
IUniverse::IUniverse() = default;
IProducer::IProducer() = default;

IObject::~IObject() = default;
ITransformable::~ITransformable() = default;
IUnit::~IUnit() = default;
IVisible::~IVisible() = default;
ISubEntityStyles::~ISubEntityStyles() = default;
ISubObjectPersistentIds::~ISubObjectPersistentIds() = default;
IAttributeSets::~IAttributeSets() = default;
IGeometry::~IGeometry() = default;
IComponent::~IComponent() = default;
IAssembly::~IAssembly() = default;
IPart::~IPart() = default;
IFile::~IFile() = default;
IInstance::~IInstance() = default;
IUniverse::~IUniverse() = default;
IProducer::~IProducer() = default;
IAssemblyFeatureOverride::~IAssemblyFeatureOverride() = default;
IBrep::~IBrep() = default;
ICurve::~ICurve() = default;
IPoint::~IPoint() = default;
IPointCloud::~IPointCloud() = default;
IPolygonMesh::~IPolygonMesh() = default;
ISketch::~ISketch() = default;
IGeometricSet::~IGeometricSet() = default;
IExtensionGeometry::~IExtensionGeometry() = default;
IWorkFeature::~IWorkFeature() = default;
IWorkAxis::~IWorkAxis() = default;
IWorkPlane::~IWorkPlane() = default;
IWorkPoint::~IWorkPoint() = default;
ILayer::~ILayer() = default;
IGroup::~IGroup() = default;
ILod::~ILod() = default;
ICamera::~ICamera() = default;
ISectionCamera::~ISectionCamera() = default;
IView::~IView() = default;
ITextFragment::~ITextFragment() = default;
ITextLine::~ITextLine() = default;
IText::~IText() = default;
IAnnotationCallout::~IAnnotationCallout() = default;
IAnnotationCalloutElement::~IAnnotationCalloutElement() = default;
IMaterialTexture::~IMaterialTexture() = default;
IRenderStyle::~IRenderStyle() = default;
IVitreolRenderStyle::~IVitreolRenderStyle() = default;
IGenericObject::~IGenericObject() = default;
ICoordSys::~ICoordSys() = default;
ObjectVisitor::~ObjectVisitor() = default;

namespace
{
template <class Object>
void VisitBy(ObjectVisitor* visitor, Object* object)
{
    if (visitor)
        visitor->Visit(object);
}
}  // namespace

void IGenericObject::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IView::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void ICamera::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IAssemblyFeatureOverride::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IAnnotationCalloutElement::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IAnnotationCallout::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IMaterialTexture::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IExtensionGeometry::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IPointCloud::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void ILod::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IPolygonMesh::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void ICoordSys::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IWorkPlane::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IWorkAxis::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IWorkPoint::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void ISketch::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void ICurve::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IPoint::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IRenderStyle::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IGroup::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IInstance::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IAssembly::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IFile::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IPart::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IGeometricSet::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void ILayer::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}
void IBrep::AcceptVisitor(ObjectVisitor* visitor)
{
    VisitBy(visitor, this);
}

void ObjectVisitor::Visit(IGenericObject*) {}
void ObjectVisitor::Visit(IView*) {}
void ObjectVisitor::Visit(ICamera*) {}
void ObjectVisitor::Visit(IAssemblyFeatureOverride*) {}
void ObjectVisitor::Visit(IAnnotationCalloutElement*) {}
void ObjectVisitor::Visit(IAnnotationCallout*) {}
void ObjectVisitor::Visit(IMaterialTexture*) {}
void ObjectVisitor::Visit(IExtensionGeometry*) {}
void ObjectVisitor::Visit(IPointCloud*) {}
void ObjectVisitor::Visit(ILod*) {}
void ObjectVisitor::Visit(IPolygonMesh*) {}
void ObjectVisitor::Visit(ICoordSys*) {}
void ObjectVisitor::Visit(IWorkPlane*) {}
void ObjectVisitor::Visit(IWorkAxis*) {}
void ObjectVisitor::Visit(IWorkPoint*) {}
void ObjectVisitor::Visit(ISketch*) {}
void ObjectVisitor::Visit(ICurve*) {}
void ObjectVisitor::Visit(IPoint*) {}
void ObjectVisitor::Visit(IRenderStyle*) {}
void ObjectVisitor::Visit(IGroup*) {}
void ObjectVisitor::Visit(IInstance*) {}
void ObjectVisitor::Visit(IAssembly*) {}
void ObjectVisitor::Visit(IFile*) {}
void ObjectVisitor::Visit(IPart*) {}
void ObjectVisitor::Visit(IGeometricSet*) {}
void ObjectVisitor::Visit(ILayer*) {}
void ObjectVisitor::Visit(IBrep*) {}

}  // namespace KVR
