#pragma once

#include <memory>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "annotation/XMLText.h"
#include "framework/api/IAnnotationCallout.h"
#include "framework/xml_util/ObjectState.h"
#include "producer/SideFileIndex.h"

namespace KVR
{

class XMLProducerImpl;

/// A note in the model. It owns its text and keeps everything else by id, looked up at each question.
class XMLAnnotationCallout : public ObjectState<IAnnotationCallout>
{
public:
    explicit XMLAnnotationCallout(XMLProducerImpl* producer);
    ~XMLAnnotationCallout() override;

    bool IsVisible() const override { return m_visible; }
    unsigned long long ChildCount() const override { return m_childIds.Size(); }
    /// Kept: the count itself is no bad index to the first test, and throws std::out_of_range.
    AnnotationCalloutChildId ChildAt(unsigned long long index) const override;
    IsValueSpecifiedEnum AnnotationPlaneId(UTF8String& id) const override;
    IText* Text() const override { return m_texts.empty() ? nullptr : m_texts.back().get(); }

    /// Fills the object from an "IAnnotationCallout" element, and registers what it defines; false for a null node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node, CurveEntities& curveEntities, MeshStore& meshStore,
                                   CurveStore& curveStore);
    /// Reads a "ChildSet"; false for a null node, and when a child failed that ends the set.
    [[nodiscard]] bool ReadChildSet(xercesc::DOMNode* node, CurveEntities& curveEntities, MeshStore& meshStore,
                                    CurveStore& curveStore);

private:
    void ReadAnnotationPlane(xercesc::DOMNode const* node);
    void ReadText(xercesc::DOMNode* node);

    XMLProducerImpl* m_producer;
    IdSet m_childIds;
    UTF8String m_annotationPlaneId;
    bool m_visible = true;
    /// The last one is the callout's; a scene may state several, and the former ones live as long.
    std::vector<std::unique_ptr<XMLText>> m_texts;
};

}  // namespace KVR
