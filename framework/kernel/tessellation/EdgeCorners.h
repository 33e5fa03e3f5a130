#pragma once

#include <gp_Pnt.hxx>
#include <vector>

#include "framework/kernel/Export.h"

class TopoDS_Edge;

namespace KVR
{

/// The corners of an edge that is straight, or a chain of straight lines; empty for any other.
KVR_KERNEL_API std::vector<gp_Pnt> CornersOf(TopoDS_Edge const& edge);

}  // namespace KVR
