#pragma once

#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/IAssemblyFeatureOverride.h"
#include "framework/api/OccurrencePathCollection.h"
#include "framework/xml_util/ObjectState.h"
#include "producer/SideFileIndex.h"

namespace KVR
{

class XMLProducerImpl;

/// Bodies and meshes of an assembly that stand for occurrences below it.
class XMLAssemblyFeatureOverride : public ObjectState<IAssemblyFeatureOverride>
{
public:
    explicit XMLAssemblyFeatureOverride(XMLProducerImpl* producer);
    ~XMLAssemblyFeatureOverride() override;

    unsigned long long ChildCount() const override { return m_childIds.size(); }
    AssemblyFeatureOverrideChildId ChildAt(unsigned long long index) const override;
    void BaseOccPaths(OccurrencePathCollection& paths) const override { paths = m_baseOccPaths; }
    bool IsVisible() const override { return m_visible; }

    /// Fills the object from an "IAssemblyFeatureOverride" element, and reads and registers its children; false for
    /// what is no element.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node, BodyEntities& bodyEntities, MeshStore& meshStore);

private:
    void ReadAttributes(xercesc::DOMNode const* node);
    void ReadBaseOccPaths(xercesc::DOMNode const* node);

    XMLProducerImpl* m_producer;
    std::vector<AssemblyFeatureOverrideChildId> m_childIds;
    bool m_visible = false;
    OccurrencePathCollection m_baseOccPaths;
};

}  // namespace KVR
