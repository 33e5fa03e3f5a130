// The out-of-line members of the interfaces: destructors, which anchor the type information, and the answers that an
// interface gives by itself. The destructors of what a visitor visits stand with the visits.

#include "framework/api/Color.h"
#include "framework/api/ICamera.h"
#include "framework/api/IComponent.h"
#include "framework/api/IFile.h"
#include "framework/api/IGeometry.h"
#include "framework/api/IObject.h"
#include "framework/api/IPolygonMesh.h"
#include "framework/api/IProducer.h"
#include "framework/api/IRenderStyle.h"
#include "framework/api/IText.h"
#include "framework/api/IUniverse.h"
#include "framework/api/IWorkFeature.h"
#include "framework/api/Mixins.h"

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
IUniverse::~IUniverse() = default;
IProducer::~IProducer() = default;
IWorkFeature::~IWorkFeature() = default;
ISectionCamera::~ISectionCamera() = default;
ITextFragment::~ITextFragment() = default;
ITextLine::~ITextLine() = default;
IText::~IText() = default;
IVitreolRenderStyle::~IVitreolRenderStyle() = default;

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
