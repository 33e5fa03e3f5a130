#pragma once

#include <memory>
#include <string>
#include <vector>

class TopoDS_Shape;

namespace KVR::Test
{

/// Shapes made with Open CASCADE, of every kind that a body may be.
struct NamedShape
{
    std::string name;
    std::shared_ptr<TopoDS_Shape> shape;
};
std::vector<NamedShape> AllShapes();

TopoDS_Shape BoxShape(double x, double y, double z);
/// A quarter of a circle of radius 2 around the origin, from (2, 0, 0) to (0, 2, 0).
TopoDS_Shape ArcEdge();

/// What two equal shapes have in common.
struct ShapeFacts
{
    int solids = 0;
    int faces = 0;
    int edges = 0;
    int vertices = 0;
    double volume = 0.0;
    double area = 0.0;
    /// Of the edges, each as often as it is used.
    double length = 0.0;
    double box[6] = {};
};
ShapeFacts FactsOf(TopoDS_Shape const& shape);
/// Fails the test unless counts are equal, and measures to a relative 1e-9.
void ExpectEqualFacts(ShapeFacts const& found, ShapeFacts const& expected, std::string const& name);

}  // namespace KVR::Test
