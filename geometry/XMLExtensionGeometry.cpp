#include "geometry/XMLExtensionGeometry.h"

#include "framework/api/Exception.h"
#include "framework/xml_util/FormatNames.h"
#include "geometry/BundleBuilder.h"
#include "geometry/XMLPoint.h"
#include "geometry/XMLPointCloud.h"
#include "producer/ElementReaders.h"

namespace KVR
{

namespace
{

// Kept: a geometric set is passed over here, while it may itself hold extension geometry; and a failed one of the own
// kind does not end the set, as it does there.
constexpr ChildIdRow kChildRows[] = {
    {Names::Child, &AddChildRef, kOnFailure_Next},
    {Names::IBrep, &AddBrep, kOnFailure_Stop},
    {Names::ICurve, &AddCurve, kOnFailure_Stop},
    {Names::IPoint, &AddObject<XMLPoint>, kOnFailure_Stop},
    {Names::IPointCloud, &AddObject<XMLPointCloud>, kOnFailure_Stop},
    {Names::IPolygonMesh, &AddPolygonMesh, kOnFailure_Next},
    {Names::IExtensionGeometry, &AddBundle<XMLExtensionGeometry>, kOnFailure_Next},
};

}  // namespace

XMLExtensionGeometry::XMLExtensionGeometry(XMLProducerImpl* producer, unsigned depth)
    : GeometryBundleState(producer, depth)
{
}

XMLExtensionGeometry::~XMLExtensionGeometry() = default;

ExtensionGeometryChildId XMLExtensionGeometry::ChildAt(unsigned long long index) const
{
    if (index > m_childIds.Size())
        throw GeneralException("Invalid index to child of XMLExtensionGeometry.");
    return ExtensionGeometryChildId::Create(m_producer->Load(m_childIds.At(index)));
}

bool XMLExtensionGeometry::ReadFromXML(xercesc::DOMNode* node, BodyEntities& bodyEntities, CurveEntities& curveEntities,
                                       MeshStore& meshStore, CurveStore& curveStore)
{
    if (!node)
        return false;
    ReadAttributes(node);
    ChildContext const context{m_producer, bodyEntities, curveEntities, meshStore, curveStore, m_depth + 1};
    for (xercesc::DOMNode* const child : Children(node))
    {
        // Kept: there is no "ChangeKey" here, unlike in a geometric set.
        Match(child, On(Names::ChildSet, [&] { Ignored(ReadChildIds(kChildRows, context, child, m_childIds)); })) ||
            ReadCommonChild(child);
    }
    return true;
}

bool ReadExtensionGeometry(XMLProducerImpl* producer, xercesc::DOMNode* node, BodyEntities& bodyEntities,
                           CurveEntities& curveEntities, MeshStore& meshStore, CurveStore& curveStore)
{
    return ReadAndRegister<XMLExtensionGeometry>(producer, node, bodyEntities, curveEntities, meshStore, curveStore) !=
           nullptr;
}

}  // namespace KVR
