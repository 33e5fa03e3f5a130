#pragma once

#include <gp_Pnt.hxx>
#include <vector>

class TopoDS_Edge;

namespace KVR
{

/// The corners of an edge that is straight, or a chain of straight lines; empty for any other.
std::vector<gp_Pnt> CornersOf(TopoDS_Edge const& edge);

}  // namespace KVR
