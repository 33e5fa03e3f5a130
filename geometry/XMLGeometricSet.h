#pragma once

#include "framework/api/IGeometricSet.h"
#include "geometry/GeometryBundleState.h"
#include "producer/SideFileIndex.h"

namespace KVR
{

class IProperty;

/// A named bundle of geometry; sets nest.
class XMLGeometricSet : public GeometryBundleState<IGeometricSet>
{
public:
    /// `depth` is the number of bundles around this one.
    explicit XMLGeometricSet(XMLProducerImpl* producer, unsigned depth = 0);
    ~XMLGeometricSet() override;

    /// Kept: the count itself is no bad index to the first test, and throws std::out_of_range.
    GeometricSetChildId ChildAt(unsigned long long index) const override;

    /// Fills the object from an "IGeometricSet" element, and registers the children that it defines; false for a null
    /// node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node, BodyEntities& bodyEntities, CurveEntities& curveEntities,
                                   MeshStore& meshStore, CurveStore& curveStore);

    /// Lists the property's id, again when it is listed already, and hands the property to the universe's database,
    /// which shares it; null has no effect.
    void AppendProperty(IProperty const* property);
};

}  // namespace KVR
