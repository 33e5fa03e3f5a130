#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/Plane.h"

namespace KVR
{

/// Reads the attributes "X", "Y", "Z". One that is absent or no number leaves its output as the caller set it.
void ReadXYZ(xercesc::DOMNode const* node, double& x, double& y, double& z);

/// The same; false for a null node, otherwise whether "Z" converted.
[[nodiscard]] bool ReadXYZChecked(xercesc::DOMNode const* node, double& x, double& y, double& z);

/// Reads the child elements "Origin", "Normal" and perhaps "Reference"; the last of a name counts, and what is missing
/// has its default. Null has no effect.
void ReadPlane(xercesc::DOMNode const* node, Plane& plane);

}  // namespace KVR
