#pragma once

#include "framework/api/IWorkFeature.h"
#include "framework/api/Vector.h"
#include "geometry/Coordinates.h"
#include "geometry/WorkFeatureState.h"

namespace KVR
{

class XMLWorkPlane : public WorkFeatureState<IWorkPlane>
{
public:
    explicit XMLWorkPlane(XMLProducerImpl* producer);
    ~XMLWorkPlane() override;

    void Origin(double& x, double& y, double& z) const override { m_origin.CopyTo(x, y, z); }
    void Normal(double& x, double& y, double& z) const override;
    /// Not specified without the element, and for the zero vector.
    IsValueSpecifiedEnum Reference(double& x, double& y, double& z) const override;
    /// Not specified without the element, and for an empty one.
    IsValueSpecifiedEnum DisplayRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                                      double& maxZ) const override;

    /// Fills the object from an "IWorkPlane" element; false for a null node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node);

private:
    void ReadDisplayRange(xercesc::DOMNode const* node);

    bool m_hasDisplayRange = false;
    bool m_hasReference = false;
    Coordinates m_origin;
    Vector m_normal;
    Vector m_reference;
    Coordinates m_minPoint;
    Coordinates m_maxPoint;
};

}  // namespace KVR
