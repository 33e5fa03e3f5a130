#include "geometry/XMLGeometricSet.h"

#include "framework/api/Exception.h"
#include "framework/xml_util/FormatNames.h"
#include "geometry/BundleBuilder.h"
#include "geometry/XMLExtensionGeometry.h"
#include "geometry/XMLPoint.h"
#include "geometry/XMLPointCloud.h"
#include "readers/ChangeKeyReader.h"
#include "readers/HeldProperties.h"

namespace KVR
{

namespace
{

constexpr ChildIdRow kChildRows[] = {
    {Names::Child, &AddChildRef, kOnFailure_Next},
    {Names::IBrep, &AddBrep, kOnFailure_Stop},
    {Names::ICurve, &AddCurve, kOnFailure_Stop},
    {Names::IPoint, &AddObject<XMLPoint>, kOnFailure_Stop},
    {Names::IPointCloud, &AddObject<XMLPointCloud>, kOnFailure_Stop},
    {Names::IPolygonMesh, &AddPolygonMesh, kOnFailure_Next},
    {Names::IGeometricSet, &AddBundle<XMLGeometricSet>, kOnFailure_Stop},
    {Names::IExtensionGeometry, &AddBundle<XMLExtensionGeometry>, kOnFailure_Stop},
};

}  // namespace

XMLGeometricSet::XMLGeometricSet(XMLProducerImpl* producer, unsigned depth) : GeometryBundleState(producer, depth) {}
XMLGeometricSet::~XMLGeometricSet() = default;

void XMLGeometricSet::AppendProperty(IProperty const* property)
{
    AddPropertyId(property, m_propertyIds);
    AddPropertyToDatabase(property, m_producer);
}

GeometricSetChildId XMLGeometricSet::ChildAt(unsigned long long index) const
{
    if (index > m_childIds.Size())
        throw GeneralException("Invalid index to child of XMLGeometricSet.");
    return GeometricSetChildId::Create(m_producer->Load(m_childIds.At(index)));
}

bool XMLGeometricSet::ReadFromXML(xercesc::DOMNode* node, BodyEntities& bodyEntities, CurveEntities& curveEntities,
                                  MeshStore& meshStore, CurveStore& curveStore)
{
    if (!node)
        return false;
    ReadAttributes(node);
    ChildContext const context{m_producer, bodyEntities, curveEntities, meshStore, curveStore, m_depth + 1};
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child,                                                                      //
              On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, m_changeKey)); }),  //
              On(Names::ChildSet, [&] { Ignored(ReadChildIds(kChildRows, context, child, m_childIds)); })) ||
            ReadCommonChild(child);
    }
    return true;
}

}  // namespace KVR
