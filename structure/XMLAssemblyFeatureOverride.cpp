#include "structure/XMLAssemblyFeatureOverride.h"

#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "framework/api/Subscript.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XMLUtils.h"
#include "readers/ChangeKeyReader.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "structure/ChildBuilders.h"

namespace KVR
{

namespace
{

// Kept: bodies and meshes alone; a "Child" that refers to one is passed over, too.
constexpr ChildRow<AssemblyFeatureOverrideChildId> kChildRows[] = {
    {Names::IBrep, &BuildBrep<AssemblyFeatureOverrideChildId>, kOnFailure_Next},
    {Names::IPolygonMesh, &BuildPolygonMesh<AssemblyFeatureOverrideChildId>, kOnFailure_Next},
};

}  // namespace

XMLAssemblyFeatureOverride::XMLAssemblyFeatureOverride(XMLProducerImpl* producer)
    : ObjectState(UTF8String(), UTF16String()), m_producer(producer)
{
}

XMLAssemblyFeatureOverride::~XMLAssemblyFeatureOverride() = default;

AssemblyFeatureOverrideChildId XMLAssemblyFeatureOverride::ChildAt(unsigned long long index) const
{
    return CheckedAt(m_childIds, index);
}

void XMLAssemblyFeatureOverride::ReadAttributes(xercesc::DOMNode const* node)
{
    // Kept: the id stays as written, also where those of its bodies are mapped.
    XMLUtils::GetNodeAttribute(node, Names::ID, m_id);
    XMLUtils::GetNodeAttribute(node, Names::Label, m_label);
    XMLUtils::GetNodeAttribute(node, Names::Visibility, m_visible);
    XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, m_versionPersistentId);
}

// Kept: every attribute of a "BaseOccPath" is a path, whatever its name. The ids of the paths are not mapped.
void XMLAssemblyFeatureOverride::ReadBaseOccPaths(xercesc::DOMNode const* node)
{
    auto const addPaths = [&](xercesc::DOMNode const* element)
    {
        TellObserver(&ReadObserver::AllAttributesTaken, element);
        xercesc::DOMNamedNodeMap const& attributes = *element->getAttributes();
        for (XMLSize_t i = 0; i < attributes.getLength(); ++i)
            m_baseOccPaths.AddPath(ParseOccurrencePath(XMLStrUtil::XMLStrToAStr(attributes.item(i)->getNodeValue())));
    };
    for (xercesc::DOMNode const* const child : Children(node))
        Match(child, On(Names::BaseOccPath, [&] { addPaths(child); }));
}

bool XMLAssemblyFeatureOverride::ReadFromXML(xercesc::DOMNode* node, BodyEntities& bodyEntities, MeshStore& meshStore)
{
    if (!IsElement(node))
        return false;
    ReadAttributes(node);
    // No child here is a curve.
    CurveEntities noCurveEntities;
    CurveStore noCurveStore;
    ChildContext const context{m_producer, bodyEntities, noCurveEntities, meshStore, noCurveStore};
    std::span<ChildRow<AssemblyFeatureOverrideChildId> const> const rows(kChildRows);
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child,                                                                                  //
              OnAnyCase(Names::BaseOccPaths, [&] { ReadBaseOccPaths(child); }),                       //
              On(Names::ChildSet, [&] { Ignored(ReadChildSet(rows, context, child, m_childIds)); }),  //
              On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, m_changeKey)); }),              //
              On(Names::ExtensionData, [&] { AddExtensionData(child, *this); }));
    }
    return true;
}

}  // namespace KVR
