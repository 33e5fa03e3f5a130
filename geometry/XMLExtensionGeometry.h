#pragma once

#include "framework/api/IExtensionGeometry.h"
#include "geometry/GeometryBundleState.h"
#include "producer/SideFileIndex.h"

namespace KVR
{

/// A bundle of geometry that belongs to an extension of the host's framework.
class XMLExtensionGeometry : public GeometryBundleState<IExtensionGeometry>
{
public:
    /// `depth` is the number of bundles around this one.
    explicit XMLExtensionGeometry(XMLProducerImpl* producer, unsigned depth = 0);
    ~XMLExtensionGeometry() override;

    /// Kept: the count itself is no bad index to the first test, and throws std::out_of_range.
    ExtensionGeometryChildId ChildAt(unsigned long long index) const override;

    /// Fills the object from an "IExtensionGeometry" element, and registers the children that it defines; false for a
    /// null node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node, BodyEntities& bodyEntities, CurveEntities& curveEntities,
                                   MeshStore& meshStore, CurveStore& curveStore);
};

}  // namespace KVR
