#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "readers/CoordinateReader.h"
#include "readers/Ignored.h"

namespace KVR
{

/// A position or direction as an element states it; zero until then.
struct Coordinates
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    /// One that is absent or no number is zero, whatever an earlier element said.
    void Read(xercesc::DOMNode const* node)
    {
        *this = Coordinates();
        Ignored(ReadXYZChecked(node, x, y, z));
    }
    void CopyTo(double& toX, double& toY, double& toZ) const
    {
        toX = x;
        toY = y;
        toZ = z;
    }
};

}  // namespace KVR
