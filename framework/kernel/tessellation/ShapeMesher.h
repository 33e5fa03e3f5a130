#pragma once

#include <IMeshTools_Parameters.hxx>
#include <Message_ProgressRange.hxx>

#include "framework/kernel/Export.h"

class TopoDS_Shape;

namespace KVR
{

/// Gives the faces of a shape triangles. A face that Open CASCADE cannot divide stays without any. Throws
/// std::bad_alloc when that is for want of memory.
KVR_KERNEL_API void MeshShape(TopoDS_Shape const& shape, IMeshTools_Parameters const& parameters,
                              Message_ProgressRange const& progress = {});

}  // namespace KVR
