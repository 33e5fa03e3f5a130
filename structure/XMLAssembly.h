#pragma once

#include <vector>

#include "framework/api/IAssembly.h"
#include "producer/SideFileIndex.h"
#include "readers/ChildSet.h"
#include "structure/ComponentState.h"
#include "structure/CrossLevelAttributes.h"

namespace KVR
{

/// A component that holds instances, and geometry of its own. Most of its children stand inside its element, and are
/// read, registered and listed with it.
class XMLAssembly : public ComponentState<IAssembly>
{
public:
    explicit XMLAssembly(XMLProducerImpl* producer);
    ~XMLAssembly() override;

    unsigned long long ChildCount() const override { return m_childIds.size(); }
    AssemblyChildId ChildAt(unsigned long long index) const override;
    unsigned long long CrossLevelVisibilityCount() const override { return m_crossLevelVisibilities.size(); }
    void CrossLevelVisibilityAt(unsigned long long index, IdSet& path, bool& visible) const override;
    unsigned long long CrossLevelStyleCount() const override { return m_crossLevelStyles.size(); }
    void CrossLevelStyleAt(unsigned long long index, IdSet& path, IdSet& styles) const override;
    unsigned long long CrossLevelTransformCount() const override { return m_crossLevelTransforms.size(); }
    void CrossLevelTransformAt(unsigned long long index, IdSet& path, Matrix3d& transform) const override;

    /// Fills the object from an "IAssembly" element. False for a null node, for one that is no element, and when a
    /// child failed that ends the reading: what was read up to there stays.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node, BodyEntities& bodyEntities, CurveEntities& curveEntities,
                                   MeshStore& meshStore, CurveStore& curveStore);

private:
    bool ReadChild(xercesc::DOMNode* child, ChildContext const& context);

    std::vector<AssemblyChildId> m_childIds;
    std::vector<CrossLevelVisibility> m_crossLevelVisibilities;
    std::vector<CrossLevelStyle> m_crossLevelStyles;
    std::vector<CrossLevelTransform> m_crossLevelTransforms;
};

}  // namespace KVR
