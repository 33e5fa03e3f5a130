// The answers that an interface gives by itself, where no class answers otherwise.

#include "framework/api/Color.h"
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

namespace KVR
{

bool IObject::IsThreadSafe() const
{
    return false;
}
IsValueSpecifiedEnum IObject::ExtensionDataByTypeId(UTF8String const&, ExtensionDataContent&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IObject::ExtensionDataChangeKeyByTypeId(UTF8String const&, SnapshotVersionEnum, UTF8String&) const
{
    return kIsValueSpecified_No;
}
IdSet IObject::PropertyIds() const
{
    return {};
}

IsValueSpecifiedEnum IUnit::LengthUnit(UnitTypeEnum&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IUnit::DisplayAngleUnit(UnitTypeEnum&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IUnit::DisplayLengthUnit(UnitTypeEnum&) const
{
    return kIsValueSpecified_No;
}
SubEntityToStylesMap* ISubEntityStyles::StylesMap() const
{
    return nullptr;
}
DataIdToPersistentIdMap* ISubObjectPersistentIds::PersistentIDsMap() const
{
    return nullptr;
}

bool IGeometry::IsNetVisible() const
{
    return IsVisible();
}
IdSet IGeometry::Styles() const
{
    return {};
}
IdSet IGeometry::NetStyles() const
{
    return {};
}

void IFile::SetDisplayLengthUnit(UnitTypeEnum unit)
{
    m_displayLengthUnit = unit;
    m_hasDisplayLengthUnit = true;
}
IsValueSpecifiedEnum IFile::DisplayLengthUnit(UnitTypeEnum& unit) const
{
    if (!m_hasDisplayLengthUnit)
        return kIsValueSpecified_No;
    unit = m_displayLengthUnit;
    return kIsValueSpecified_Yes;
}

void IProducer::Unload(UTF8String const&) {}

unsigned long IPolygonMesh::MeshSegmentCount() const
{
    return FaceSegmentCount();
}
IsValueSpecifiedEnum IPolygonMesh::MeshSegmentAt(unsigned long index, PolygonIndexSet& polygons) const
{
    FaceSegmentInfo segment;
    if (FaceSegmentAt(index, segment) != kIsValueSpecified_Yes)
        return kIsValueSpecified_No;
    polygons = segment.PolygonIndices();
    return kIsValueSpecified_Yes;
}
IsValueSpecifiedEnum IPolygonMesh::MeshSegmentVisibilityAt(unsigned long index, bool& visible) const
{
    FaceSegmentInfo segment;
    if (FaceSegmentAt(index, segment) != kIsValueSpecified_Yes)
        return kIsValueSpecified_No;
    visible = segment.IsVisible();
    return kIsValueSpecified_Yes;
}
IsValueSpecifiedEnum IPolygonMesh::EdgeSegmentAt(unsigned long index, VertexIndexSet& vertices) const
{
    EdgeSegmentInfo segment;
    if (EdgeSegmentInfoAt(index, segment) != kIsValueSpecified_Yes)
        return kIsValueSpecified_No;
    vertices = segment.VertexIndices();
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum IRenderStyle::DiffuseColor(Color&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::DiffuseTexture(UTF8String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::DiffuseFactor(double&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::AmbientColor(Color&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::AmbientTexture(UTF8String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::AmbientFactor(double&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::EmissionColor(Color&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::EmissionTexture(UTF8String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::EmissionFactor(double&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::SpecularColor(Color&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::SpecularTexture(UTF8String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::SpecularFactor(double&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::Shininess(double&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::ShaderType(ShadingModelType&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::Reflection(double&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::Eccentricity(double&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::Rolloff(double&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::Transparency(Color&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::Transparency(double&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::BumpMap(UTF8String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::CutoutTexture(UTF8String&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::PointStyleMarker(PointStyleMarkerTypeEnum&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::PointStyleMarkerSize(double&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::CurveStyleFont(CurveStyleFontTypeEnum&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::CurveStyleWidth(double&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IRenderStyle::CurveStyleFillArea(CurveStyleFillTypeEnum&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum IVitreolRenderStyle::BestFitDiffuseColor(Color& color) const
{
    return DiffuseColor(color);
}

}  // namespace KVR
