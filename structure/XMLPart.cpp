#include "structure/XMLPart.h"

#include "framework/api/Subscript.h"
#include "framework/xml_util/FormatNames.h"
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
    {Names::IBrep, &BuildBrep<PartChildId>, kOnFailure_Next},
    {Names::ICurve, &BuildCurve<PartChildId>, kOnFailure_Next},
    {Names::IPoint, &BuildObject<PartChildId, XMLPoint>, kOnFailure_Stop},
    {Names::IPointCloud, &BuildObject<PartChildId, XMLPointCloud>, kOnFailure_Stop},
    {Names::IPolygonMesh, &BuildPolygonMesh<PartChildId>, kOnFailure_Next},
    {Names::IGeometricSet, &BuildBundle<PartChildId, XMLGeometricSet>, kOnFailure_Stop},
    {Names::ISketch, &BuildSketch<PartChildId>, kOnFailure_Stop},
    {Names::IExtensionGeometry, &BuildBundle<PartChildId, XMLExtensionGeometry>, kOnFailure_Stop},
    {Names::Child, &BuildChildRef<PartChildId>, kOnFailure_Next},
    {Names::IWorkAxis, &BuildObject<PartChildId, XMLWorkAxis>, kOnFailure_Next},
    {Names::IWorkPlane, &BuildObject<PartChildId, XMLWorkPlane>, kOnFailure_Next},
    {Names::IWorkPoint, &BuildObject<PartChildId, XMLWorkPoint>, kOnFailure_Next},
    {Names::IAnnotationCallout, &BuildAnnotationCallout<PartChildId>, kOnFailure_Stop},
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
        Match(child,                                                                                  //
              On(Names::ChildSet, [&] { Ignored(ReadChildSet(rows, context, child, m_childIds)); }),  //
              On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, m_changeKey)); }),              //
              On(Names::Unit, [&] { ReadUnits(child); }),                                             //
              On(Names::UnitAndTolerance, [&] { KeepUnitAndTolerance(child); }),                      //
              On(Names::AttributeSet, [&] { ReadAttributeSet(child); }),
              On(Names::Styles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_styles)); }),  //
              On(Names::FileProperties, [&] { m_fileProperties.Read(child); }),                 //
              On(Names::ExtensionData, [&] { AddExtensionData(child, *this); }));
    }
    ResolveUnits();
    return true;
}

}  // namespace KVR
