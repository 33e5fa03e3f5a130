#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/IAnnotationCallout.h"
#include "framework/xml_util/ObjectState.h"
#include "producer/SideFileIndex.h"

namespace KVR
{

class XMLProducerImpl;

/// Curves, points and meshes that a callout is drawn with. They belong to the registry; an element keeps their ids.
class XMLAnnotationCalloutElement : public ObjectState<IAnnotationCalloutElement>
{
public:
    explicit XMLAnnotationCalloutElement(XMLProducerImpl* producer);
    ~XMLAnnotationCalloutElement() override;

    unsigned long long ChildCount() const override { return m_childIds.Size(); }
    /// Kept: the count itself is no bad index to the first test, and throws std::out_of_range.
    AnnotationCalloutElementChildId ChildAt(unsigned long long index) const override;
    IdSet Styles() const override { return m_styles; }

    /// Fills the object from an "IAnnotationCalloutElement" element, and registers the geometry that it defines; false
    /// for a null node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node, CurveEntities& curveEntities, MeshStore& meshStore,
                                   CurveStore& curveStore);
    /// Reads a "ChildSet"; false for a null node, and when a child failed that ends the set.
    [[nodiscard]] bool ReadChildSet(xercesc::DOMNode* node, CurveEntities& curveEntities, MeshStore& meshStore,
                                    CurveStore& curveStore);

private:
    XMLProducerImpl* m_producer;
    IdSet m_childIds;
    IdSet m_styles;
};

}  // namespace KVR
