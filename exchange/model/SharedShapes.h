#pragma once

#include <TopoDS_Shape.hxx>
#include <cstddef>
#include <vector>

namespace KVR
{

/// Shapes that have a face, edge or vertex in common, so that one thread at a time may work at them.
struct ShapeGroup
{
    /// Their places, in their order.
    std::vector<std::size_t> members;
    /// Of all of them; one that several have counts for each.
    int faces = 0;
};

/// All shapes in groups, in the order of their first members; null shapes are in none.
std::vector<ShapeGroup> SharedShapes(std::vector<TopoDS_Shape> const& shapes);

}  // namespace KVR
