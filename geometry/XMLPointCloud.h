#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/IPointCloud.h"
#include "framework/xml_util/ObjectState.h"
#include "geometry/NumberTexts.h"
#include "readers/LengthUnitState.h"
#include "readers/TransformState.h"

namespace KVR
{

class XMLProducerImpl;

/// Many points as one long text. A coordinate is converted when its point is asked for, each time anew.
class XMLPointCloud : public LengthUnitState<TransformState<ObjectState<IPointCloud>>>
{
public:
    explicit XMLPointCloud(XMLProducerImpl* producer);
    ~XMLPointCloud() override;

    double AngularTolerance() const override { return -1.0; }
    double LinearTolerance() const override { return -1.0; }
    double ParamTolerance() const override { return -1.0; }
    bool IsVisible() const override { return m_visible; }
    bool IsNetVisible() const override { return m_netVisible; }
    std::size_t PointCount() const override { return m_coordinates.RowCount(); }
    /// Leaves an output alone also when its text is no number.
    void Point(std::size_t index, double* x, double* y, double* z) const override;
    void SetTransform(Matrix3d const& transform) override { KeepTransform(transform); }

    /// Fills the object from an "IPointCloud" element; false for a null node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node);

private:
    void ReadAttributes(xercesc::DOMNode const* node);

    XMLProducerImpl* m_producer;
    NumberTexts m_coordinates;
    bool m_visible = true;
    bool m_netVisible = true;
};

}  // namespace KVR
