#pragma once

#include "framework/api/IWorkFeature.h"
#include "geometry/Coordinates.h"
#include "geometry/WorkFeatureState.h"

namespace KVR
{

class XMLWorkAxis : public WorkFeatureState<IWorkAxis>
{
public:
    explicit XMLWorkAxis(XMLProducerImpl* producer);
    ~XMLWorkAxis() override;

    void StartPoint(double& x, double& y, double& z) const override { m_startPoint.CopyTo(x, y, z); }
    void Axis(double& x, double& y, double& z) const override { m_axis.CopyTo(x, y, z); }
    void EndPoint(double& x, double& y, double& z) const override { m_endPoint.CopyTo(x, y, z); }

    /// Fills the object from an "IWorkAxis" element; false for a null node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node);

private:
    Coordinates m_axis;
    Coordinates m_startPoint;
    Coordinates m_endPoint;
};

}  // namespace KVR
