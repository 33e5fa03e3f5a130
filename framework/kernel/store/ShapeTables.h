#pragma once

#include <TopAbs_ShapeEnum.hxx>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

namespace KVR
{

/// What the sections of a store's shapes have in them that later ones refer to, by indices from 1. Everything that is
/// added is answered with whether it may stand there.
class ShapeTables
{
public:
    /// The elementary locations of a chain, by index, each with its power.
    using Chain = std::vector<std::pair<int, int>>;
    /// The knots that a curve with a period repeats.
    struct Period
    {
        double first;
        double length;
    };
    /// Curves of one table.
    struct Curves
    {
        int count = 0;
        /// Those with a period, by rising index.
        std::vector<std::pair<int, Period>> periods;
    };

    explicit ShapeTables(std::uint64_t size) : m_size(size) {}

    void AddLocation() { m_locations.push_back(1); }
    bool AddLocation(Chain&& chain);
    bool IsLocation(int index) const noexcept { return index == 0 || Has(m_locations, index); }

    Curves curves2d;
    Curves curves;
    int surfaces = 0;
    int polygons = 0;
    bool IsCurve2d(int index) const noexcept { return index >= 1 && index <= curves2d.count; }
    bool IsCurve(int index) const noexcept { return index >= 1 && index <= curves.count; }
    bool IsSurface(int index) const noexcept { return index >= 1 && index <= surfaces; }
    bool IsPolygon(int index) const noexcept { return index >= 1 && index <= polygons; }

    /// A polygon on a triangulation, with the last of the nodes that it names; a triangulation with its nodes.
    void AddNodes(int last) { m_lastNodes.push_back(last); }
    void AddTriangulation(int nodes) { m_triangulations.push_back(nodes); }
    bool IsTriangulation(int index) const noexcept { return Has(m_triangulations, index); }
    bool IsOnTriangulation(int nodes, int triangulation) const noexcept;

    /// Opens an edge; its representations follow.
    void BeginEdge();
    bool AddToEdge(int location);
    /// A range of a representation, and whether it is that of a curve in space.
    bool AddToEdge(double first, double last, bool isInSpace);
    void AddToEdge(Curves const& table, int curve);
    /// Whether Open CASCADE may go through the edge's representations and walk its curves to the ends of their ranges.
    bool IsEdgeSafe() const noexcept;

    bool BeginShape(TopAbs_ShapeEnum kind);
    bool AddChild(int index, int location);
    int ShapeCount() const noexcept { return static_cast<int>(m_shapes.size()); }
    TopAbs_ShapeEnum KindOf(int shape) const noexcept { return m_shapes[static_cast<std::size_t>(shape) - 1].kind; }

private:
    struct Shape
    {
        TopAbs_ShapeEnum kind = TopAbs_SHAPE;
        /// Of compounds in one another.
        int depth = 1;
        /// The elementary locations on the way to what is placed through most of them.
        int placing = 0;
        /// With all that is in it, as often as it is in it.
        std::uint64_t unfolded = 1;
    };

    template <class Item>
    static bool Has(std::vector<Item> const& items, int index) noexcept
    {
        return index >= 1 && static_cast<std::size_t>(index) <= items.size();
    }
    int LengthOf(int location) const noexcept
    {
        return location == 0 ? 0 : m_locations[static_cast<std::size_t>(location) - 1];
    }

    std::uint64_t m_size;
    /// How many elementary locations each consists of.
    std::vector<int> m_locations;
    std::set<Chain> m_chains;
    /// What it takes Open CASCADE to put the chains together, and their parts.
    std::uint64_t m_joins = 0;
    std::uint64_t m_parts = 0;
    std::vector<int> m_lastNodes;
    std::vector<int> m_triangulations;
    std::vector<Shape> m_shapes;

    // The edge.
    std::uint64_t m_representations = 0;
    std::uint64_t m_comparisons = 0;
    std::uint64_t m_longestPlacing = 0;
    double m_first = 0.0;
    double m_last = 0.0;
    double m_lengthInSpace = 0.0;
    double m_greatestLength = 0.0;
    std::vector<Period> m_periods;
};

}  // namespace KVR
