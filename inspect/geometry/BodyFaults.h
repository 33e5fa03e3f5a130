#pragma once

#include <cstddef>
#include <string>
#include <vector>

class TopoDS_Shape;

namespace KVR
{

/// What Open CASCADE's analyser says against a shape.
struct BodyFaults
{
    struct Fault
    {
        /// "an edge does not lie on its face".
        std::string text;
        std::size_t count = 0;
    };
    /// In the order in which they were met; empty for a shape that is valid.
    std::vector<Fault> faults;

    /// A body with so many edges in one wire is looked at without what takes the square of that number.
    static constexpr int kMostEdgesOfWire = 4000;

    static BodyFaults Of(TopoDS_Shape const& shape);
};

/// Whether a shape is made of solids alone whose shells are all closed.
bool IsClosedBody(TopoDS_Shape const& shape);

}  // namespace KVR
