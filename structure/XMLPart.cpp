#include "structure/XMLPart.h"

#include "framework/api/Subscript.h"
#include "geometry/XMLExtensionGeometry.h"
#include "geometry/XMLGeometricSet.h"
#include "geometry/XMLPoint.h"
#include "geometry/XMLPointCloud.h"
#include "geometry/XMLWorkAxis.h"
#include "geometry/XMLWorkPlane.h"
#include "geometry/XMLWorkPoint.h"
#include "readers/ChangeKeyReader.h"
#include "readers/ExtensionDataReader.h"
#include "structure/ChildBuilders.h"

namespace KVR
{

namespace
{

// Kept: a part passes over instances and feature overrides.
constexpr ChildRow<PartChildId> kChildRows[] = {
    {u"IBrep", &BuildBrep<PartChildId>, kOnFailure_Next},
    {u"ICurve", &BuildCurve<PartChildId>, kOnFailure_Next},
    {u"IPoint", &BuildObject<PartChildId, XMLPoint>, kOnFailure_Stop},
    {u"IPointCloud", &BuildObject<PartChildId, XMLPointCloud>, kOnFailure_Stop},
    {u"IPolygonMesh", &BuildPolygonMesh<PartChildId>, kOnFailure_Next},
    {u"IGeometricSet", &BuildBundle<PartChildId, XMLGeometricSet>, kOnFailure_Stop},
    {u"ISketch", &BuildSketch<PartChildId>, kOnFailure_Stop},
    {u"IExtensionGeometry", &BuildBundle<PartChildId, XMLExtensionGeometry>, kOnFailure_Stop},
    {u"Child", &BuildChildRef<PartChildId>, kOnFailure_Next},
    {u"IWorkAxis", &BuildObject<PartChildId, XMLWorkAxis>, kOnFailure_Next},
    {u"IWorkPlane", &BuildObject<PartChildId, XMLWorkPlane>, kOnFailure_Next},
    {u"IWorkPoint", &BuildObject<PartChildId, XMLWorkPoint>, kOnFailure_Next},
    {u"IAnnotationCallout", &BuildAnnotationCallout<PartChildId>, kOnFailure_Stop},
};

}  // namespace

XMLPart::XMLPart(XMLProducerImpl* producer) : ComponentState(producer) {}
XMLPart::~XMLPart() = default;

PartChildId XMLPart::ChildAt(unsigned long long index) const
{
    return CheckedAt(m_childIds, index);
}

bool XMLPart::ReadFromXML(xercesc::DOMNode* node, BodyEntities& bodyEntities, CurveEntities& curveEntities,
                          MeshStore& meshStore, CurveStore& curveStore)
{
    if (!IsElement(node))
        return false;
    ReadAttributes(node);
    ChildContext const context{m_producer, bodyEntities, curveEntities, meshStore, curveStore};
    std::span<ChildRow<PartChildId> const> const rows(kChildRows);
    for (xercesc::DOMNode* const child : Children(node))
    {
        // A set that stopped early is like any other: the children of the part behind it are read.
        Match(child,                                                                              //
              On(u"ChildSet", [&] { Ignored(ReadChildSet(rows, context, child, m_childIds)); }),  //
              On(u"ChangeKey", [&] { Ignored(ReadChangeKey(child, m_changeKey)); }),              //
              On(u"Unit", [&] { ReadUnits(child); }),                                             //
              On(u"UnitAndTolerance", [&] { KeepUnitAndTolerance(child); }),                      //
              On(u"AttributeSet", [&] { ReadAttributeSet(child); }),
              On(u"Styles", [&] { Ignored(ReadStyleRefs(m_producer, child, m_styles)); }),  //
              On(u"FileProperties", [&] { m_fileProperties.Read(child); }),                 //
              On(u"ExtensionData", [&] { AddExtensionData(child, *this); }));
    }
    ResolveUnits();
    return true;
}

}  // namespace KVR
