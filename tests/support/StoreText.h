#pragma once

#include <string>

#include "tests/support/KernelBytes.h"

namespace KVR::Test
{

/// Content of a text store with one body, with the sections given and whatever is empty elsewhere.
struct TextContent
{
    std::string locations = "Locations 0\n";
    std::string curves2d = "Curve2ds 0\n";
    std::string curves = "Curves 0\n";
    std::string nodes = "PolygonOnTriangulations 0\n";
    std::string surfaces = "Surfaces 0\n";
    std::string triangulations = "Triangulations 0\n";
    std::string shapes = "TShapes 2\nVe\n1e-07\n0 0 0\n0 0\n\n0101101\n*\nCo\n\n1100000\n+2 0 *\n";
    std::string root = "+1 0 ";

    /// The shapes alone.
    std::string Shapes() const
    {
        return "\nCASCADE Topology V3, (c) Open Cascade\n" + locations + curves2d + curves + "Polygon3D 0\n" + nodes +
               surfaces + triangulations + "\n" + shapes + "\n" + root + "\n";
    }
    std::string Bytes() const { return "1\n0\n0\n0\n0\n" + Shapes(); }
    bool IsRestored() const { return RestoredStore(WithHead(Bytes(), true), true, false).result.ok(); }
};

/// A compound of one edge with the representations.
inline std::string EdgeWith(std::string const& representations)
{
    return "TShapes 2\nEd\n 1e-07 1 1 0\n" + representations + "0\n\n0101000\n*\nCo\n\n1100000\n+2 0 *\n";
}

inline std::string Repeated(std::string const& text, int times)
{
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

inline constexpr char kPlane[] = "Surfaces 1\n1 0 0 0 0 0 1 1 0 0 0 1 0\n";
inline constexpr char kCircle[] = "2 0 0 0 0 0 1 1 0 0 0 1 0 2\n";
/// A location.
inline constexpr char kMove[] = "1\n1 0 0 1 \n0 1 0 0 \n0 0 1 0 \n";

}  // namespace KVR::Test
