#include "structure/XMLAssembly.h"

#include "framework/api/Exception.h"
#include "framework/api/Subscript.h"
#include "framework/xml_util/FormatNames.h"
#include "geometry/XMLExtensionGeometry.h"
#include "geometry/XMLGeometricSet.h"
#include "geometry/XMLPoint.h"
#include "geometry/XMLPointCloud.h"
#include "geometry/XMLWorkAxis.h"
#include "geometry/XMLWorkPlane.h"
#include "geometry/XMLWorkPoint.h"
#include "producer/ElementReaders.h"
#include "readers/ChangeKeyReader.h"
#include "readers/ExtensionDataReader.h"
#include "structure/ChildBuilders.h"
#include "structure/XMLAssemblyFeatureOverride.h"
#include "structure/XMLInstance.h"

namespace KVR
{

namespace
{

bool BuildInstance(ChildContext const& context, xercesc::DOMNode* node, std::vector<AssemblyChildId>& children)
{
    IInstance const* const instance = ReadInstance(node, *context.producer->objectNodeIndex);
    if (!instance)
        return false;
    children.emplace_back(instance);
    return true;
}

bool BuildFeatureOverride(ChildContext const& context, xercesc::DOMNode* node, std::vector<AssemblyChildId>& children)
{
    auto featureOverride = std::make_unique<XMLAssemblyFeatureOverride>(context.producer);
    if (!featureOverride->ReadFromXML(node, context.bodyEntities, context.meshStore))
        return false;
    children.emplace_back(static_cast<IAssemblyFeatureOverride const*>(featureOverride.get()));
    Register(*context.producer, node, std::move(featureOverride));
    return true;
}

constexpr ChildRow<AssemblyChildId> kChildRows[] = {
    {Names::IInstance, &BuildInstance, kOnFailure_Abort},
    {Names::IAssemblyFeatureOverride, &BuildFeatureOverride, kOnFailure_Abort},
    {Names::ISketch, &BuildSketch<AssemblyChildId>, kOnFailure_Abort},
    {Names::IBrep, &BuildBrep<AssemblyChildId>, kOnFailure_Next},
    {Names::ICurve, &BuildCurve<AssemblyChildId>, kOnFailure_Next},
    {Names::IPoint, &BuildObject<AssemblyChildId, XMLPoint>, kOnFailure_Abort},
    {Names::IPointCloud, &BuildObject<AssemblyChildId, XMLPointCloud>, kOnFailure_Abort},
    {Names::IPolygonMesh, &BuildPolygonMesh<AssemblyChildId>, kOnFailure_Next},
    {Names::IGeometricSet, &BuildBundle<AssemblyChildId, XMLGeometricSet>, kOnFailure_Abort},
    {Names::IExtensionGeometry, &BuildBundle<AssemblyChildId, XMLExtensionGeometry>, kOnFailure_Abort},
    {Names::Child, &BuildChildRef<AssemblyChildId>, kOnFailure_Next},
    {Names::IWorkAxis, &BuildObject<AssemblyChildId, XMLWorkAxis>, kOnFailure_Next},
    {Names::IWorkPlane, &BuildObject<AssemblyChildId, XMLWorkPlane>, kOnFailure_Next},
    {Names::IWorkPoint, &BuildObject<AssemblyChildId, XMLWorkPoint>, kOnFailure_Next},
    {Names::IAnnotationCallout, &BuildAnnotationCallout<AssemblyChildId>, kOnFailure_Abort},
};

}  // namespace

XMLAssembly::XMLAssembly(XMLProducerImpl* producer) : ComponentState(producer) {}
XMLAssembly::~XMLAssembly() = default;

AssemblyChildId XMLAssembly::ChildAt(unsigned long long index) const
{
    if (index >= m_childIds.size())
        throw GeneralException("Invalid index to child of XMLAssembly.");
    return m_childIds[index];
}

void XMLAssembly::CrossLevelVisibilityAt(unsigned long long index, IdSet& path, bool& visible) const
{
    CrossLevelVisibility const& held = CheckedAt(m_crossLevelVisibilities, index);
    path = held.path;
    visible = held.visible;
}

void XMLAssembly::CrossLevelStyleAt(unsigned long long index, IdSet& path, IdSet& styles) const
{
    CrossLevelStyle const& held = CheckedAt(m_crossLevelStyles, index);
    path = held.path;
    styles = held.styles;
}

void XMLAssembly::CrossLevelTransformAt(unsigned long long index, IdSet& path, Matrix3d& transform) const
{
    CrossLevelTransform const& held = CheckedAt(m_crossLevelTransforms, index);
    path = held.path;
    transform = held.transform;
}

bool XMLAssembly::ReadFromXML(xercesc::DOMNode* node, BodyEntities& bodyEntities, CurveEntities& curveEntities,
                              MeshStore& meshStore, CurveStore& curveStore)
{
    if (!IsElement(node))
        return false;
    ReadAttributes(node);
    ChildContext const context{m_producer, bodyEntities, curveEntities, meshStore, curveStore};
    for (xercesc::DOMNode* const child : Children(node))
    {
        if (!ReadChild(child, context))
            return false;
    }
    ResolveUnits();
    return true;
}

// A row per child element; false when a failed child ends the whole reading.
bool XMLAssembly::ReadChild(xercesc::DOMNode* child, ChildContext const& context)
{
    bool goesOn = true;
    Match(child,                                                                      //
          On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, m_changeKey)); }),  //
          On(Names::Unit, [&] { ReadUnits(child); }),                                 //
          // Kept: in any case here, unlike in a part; but what is not written so reads as nothing.
          OnAnyCase(Names::UnitAndTolerance, [&] { KeepUnitAndTolerance(child); }),  //
          On(Names::ChildSet,
             [&]
             {
                 std::span<ChildRow<AssemblyChildId> const> const rows(kChildRows);
                 goesOn = ReadChildSet(rows, context, child, m_childIds) != ChildSetEnd::kAborted;
             }),
          On(Names::AttributeSet, [&] { ReadAttributeSet(child); }),
          On(Names::Styles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_styles)); }),  //
          On(Names::CrossLevelAttributes,
             [&]
             {
                 Ignored(ReadCrossLevelAttributes(m_producer, child, m_crossLevelVisibilities, m_crossLevelStyles,
                                                  m_crossLevelTransforms));
             }),
          On(Names::FileProperties, [&] { m_fileProperties.Read(child); }),  //
          On(Names::ExtensionData, [&] { AddExtensionData(child, *this); }));
    return goesOn;
}

}  // namespace KVR
