#pragma once

#include "framework/api/IWorkFeature.h"
#include "geometry/Coordinates.h"
#include "geometry/WorkFeatureState.h"

namespace KVR
{

class XMLWorkPoint : public WorkFeatureState<IWorkPoint>
{
public:
    explicit XMLWorkPoint(XMLProducerImpl* producer);
    ~XMLWorkPoint() override;

    void Position(double& x, double& y, double& z) const override { m_position.CopyTo(x, y, z); }

    /// Fills the object from an "IWorkPoint" element; false for a null node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node);

private:
    Coordinates m_position;
};

}  // namespace KVR
