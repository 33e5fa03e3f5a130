#include "geometry/XMLWorkPlane.h"

#include "framework/api/MathUtil.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR
{

namespace
{

void ReadVector(xercesc::DOMNode const* node, Vector& vector)
{
    Coordinates coordinates;
    coordinates.Read(node);
    coordinates.CopyTo(vector[0], vector[1], vector[2]);
}

void CopyTo(Vector const& vector, double& x, double& y, double& z)
{
    x = vector[0];
    y = vector[1];
    z = vector[2];
}

}  // namespace

XMLWorkPlane::XMLWorkPlane(XMLProducerImpl* producer) : WorkFeatureState(producer) {}
XMLWorkPlane::~XMLWorkPlane() = default;

void XMLWorkPlane::Normal(double& x, double& y, double& z) const
{
    CopyTo(m_normal, x, y, z);
}

IsValueSpecifiedEnum XMLWorkPlane::Reference(double& x, double& y, double& z) const
{
    if (!m_hasReference || m_reference.IsZero(MathUtil::kZEROTOLERANCE))
        return kIsValueSpecified_No;
    CopyTo(m_reference, x, y, z);
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLWorkPlane::DisplayRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                                                double& maxZ) const
{
    if (!m_hasDisplayRange)
        return kIsValueSpecified_No;
    m_minPoint.CopyTo(minX, minY, minZ);
    m_maxPoint.CopyTo(maxX, maxY, maxZ);
    return kIsValueSpecified_Yes;
}

void XMLWorkPlane::ReadDisplayRange(xercesc::DOMNode const* node)
{
    // Kept: anything in the element makes it a range, a blank or a comment too; without anything it is none.
    if (node->getFirstChild())
        m_hasDisplayRange = true;
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child, On(Names::MinPoint, [&] { m_minPoint.Read(child); }),
              On(Names::MaxPoint, [&] { m_maxPoint.Read(child); }));
    }
}

bool XMLWorkPlane::ReadFromXML(xercesc::DOMNode* node)
{
    XMLHierachyObject::ReadFromXML(node);
    if (!node)
        return false;
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child,                                                    //
              On(Names::Origin, [&] { m_origin.Read(child); }),         //
              On(Names::Normal, [&] { ReadVector(child, m_normal); }),  //
              On(Names::Reference,
                 [&]
                 {
                     ReadVector(child, m_reference);
                     m_hasReference = true;
                 }),
              On(Names::DisplayRange, [&] { ReadDisplayRange(child); }));
    }
    return true;
}

}  // namespace KVR
