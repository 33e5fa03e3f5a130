#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/ISketch.h"
#include "framework/xml_util/ObjectState.h"
#include "producer/SideFileIndex.h"
#include "readers/TransformState.h"
#include "readers/UnitState.h"

namespace KVR
{

struct ChildContext;
class XMLProducerImpl;

/// Curves and points drawn together. They belong to the registry; a sketch keeps their ids.
class XMLSketch : public UnitState<TransformState<ObjectState<ISketch>>>
{
public:
    explicit XMLSketch(XMLProducerImpl* producer);
    ~XMLSketch() override;

    double AngularTolerance() const override { return -1.0; }
    double LinearTolerance() const override { return -1.0; }
    double ParamTolerance() const override { return -1.0; }
    bool IsVisible() const override { return m_visible; }
    bool IsNetVisible() const override { return m_netVisible; }
    IdSet Styles() const override { return m_styles; }
    IdSet NetStyles() const override { return m_netStyles; }
    SketchTypeEnum SketchType() const override { return m_type; }
    IdSet CurveIds() const override { return m_curveIds; }
    IdSet PointIds() const override { return m_pointIds; }
    unsigned long long ChildCount() const override { return m_curveIds.Size() + m_pointIds.Size(); }
    /// Kept: curves by their index, then points by the same index, so that the first points are not reached.
    UTF8String ChildIdAt(unsigned long long index) const override;

    /// Fills the object from an "ISketch" element, and registers the points and curves that it defines. False for a
    /// null node, and for a sketch of no known type: what it defines is registered all the same.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node, CurveEntities& curveEntities);

private:
    bool ReadAttributes(xercesc::DOMNode const* node);
    void ReadChild(xercesc::DOMNode* child, ChildContext const& context);

    XMLProducerImpl* m_producer;
    IdSet m_pointIds;
    IdSet m_curveIds;
    SketchTypeEnum m_type = kSketchType_2D;
    bool m_visible = true;
    bool m_netVisible = true;
    IdSet m_styles;
    IdSet m_netStyles;
};

}  // namespace KVR
