#include "readers/CoordinateReader.h"

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "readers/Ignored.h"

namespace KVR
{

namespace
{

bool ReadCoordinate(xercesc::DOMNode const* node, AttributeName name, double& value)
{
    return XMLStrUtil::XMLStrToDouble(AttributeText(node, name), value);
}

// A position or direction; coordinates that are missing are 0.
template <class Coordinates>
void ReadInto(xercesc::DOMNode const* node, Coordinates& coordinates)
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    ReadXYZ(node, x, y, z);
    coordinates.Set(x, y, z);
}

}  // namespace

void ReadXYZ(xercesc::DOMNode const* node, double& x, double& y, double& z)
{
    Ignored(ReadXYZChecked(node, x, y, z));
}

bool ReadXYZChecked(xercesc::DOMNode const* node, double& x, double& y, double& z)
{
    Ignored(ReadCoordinate(node, Names::X, x));
    Ignored(ReadCoordinate(node, Names::Y, y));
    return ReadCoordinate(node, Names::Z, z);
}

void ReadPlane(xercesc::DOMNode const* node, Plane& plane)
{
    if (!node)
        return;
    Position origin;
    UnitVector normal;
    UnitVector reference;
    bool hasReference = false;
    for (xercesc::DOMNode const* const child : Children(node))
    {
        Match(child,                                                //
              On(Names::Origin, [&] { ReadInto(child, origin); }),  //
              On(Names::Normal, [&] { ReadInto(child, normal); }),  //
              On(Names::Reference,
                 [&]
                 {
                     ReadInto(child, reference);
                     hasReference = true;
                 }));
    }
    plane = hasReference ? Plane(origin, normal, reference) : Plane(origin, normal);
}

}  // namespace KVR
