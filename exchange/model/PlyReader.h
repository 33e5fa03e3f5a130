#pragma once

#include <Poly_Triangulation.hxx>
#include <string>

namespace KVR
{

/// Reads the polygons of a PLY file as triangles. Throws ModelError.
Handle(Poly_Triangulation) ReadPly(std::string const& path);

}  // namespace KVR
