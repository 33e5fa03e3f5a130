#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/IPoint.h"
#include "framework/xml_util/ObjectState.h"
#include "readers/LengthUnitState.h"
#include "readers/TransformState.h"

namespace KVR
{

class XMLProducerImpl;

/// A point whose position its element states.
class XMLPoint : public LengthUnitState<TransformState<ObjectState<IPoint>>>
{
public:
    explicit XMLPoint(XMLProducerImpl* producer);
    ~XMLPoint() override;

    double AngularTolerance() const override { return -1.0; }
    double LinearTolerance() const override { return -1.0; }
    double ParamTolerance() const override { return -1.0; }
    bool IsVisible() const override { return m_visible; }
    bool IsNetVisible() const override { return m_netVisible; }
    IdSet Styles() const override { return m_styles; }
    IdSet NetStyles() const override { return m_netStyles; }
    double X() const override { return m_x; }
    double Y() const override { return m_y; }
    double Z() const override { return m_z; }
    /// Never specified: a point's colour is that of its styles.
    IsValueSpecifiedEnum PointColor(Color& color) const override;
    /// Always empty.
    UTF8String MarkerStyleId() const override { return {}; }
    /// Never specified.
    IsValueSpecifiedEnum PointSize(double& size) const override;
    void SetTransform(Matrix3d const& transform) override { KeepTransform(transform); }

    /// Fills the object from an "IPoint" element; false for a null node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node);

private:
    void ReadAttributes(xercesc::DOMNode const* node);

    XMLProducerImpl* m_producer;
    double m_x = 0.0;
    double m_y = 0.0;
    double m_z = 0.0;
    bool m_visible = true;
    bool m_netVisible = true;
    IdSet m_styles;
    IdSet m_netStyles;
};

}  // namespace KVR
