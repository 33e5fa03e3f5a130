#pragma once

#include <vector>

#include "tests/support/Shapes.h"

namespace KVR::Test
{

/// Small shapes that together have every kind of curve, surface, polygon, triangulation, location and shape that Open
/// CASCADE writes, and everything that edges and vertices may say of them.
std::vector<NamedShape> RareShapes();

}  // namespace KVR::Test
