#pragma once

#include <vector>

#include "framework/api/IPart.h"
#include "producer/SideFileIndex.h"
#include "readers/ChildSet.h"
#include "structure/ComponentState.h"

namespace KVR
{

/// A component without instances. Its children stand inside its element, and are read, registered and listed with it.
class XMLPart : public ComponentState<IPart>
{
public:
    explicit XMLPart(XMLProducerImpl* producer);
    ~XMLPart() override;

    unsigned long long ChildCount() const override { return m_childIds.size(); }
    PartChildId ChildAt(unsigned long long index) const override;

    /// Fills the object from an "IPart" element. False for a null node and for one that is no element.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node, BodyEntities& bodyEntities, CurveEntities& curveEntities,
                                   MeshStore& meshStore, CurveStore& curveStore);

private:
    std::vector<PartChildId> m_childIds;
};

}  // namespace KVR
