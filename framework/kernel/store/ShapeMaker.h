#pragma once

#include <Geom2d_Curve.hxx>
#include <GeomAbs_Shape.hxx>
#include <Geom_Curve.hxx>
#include <Geom_Surface.hxx>
#include <Poly_Polygon3D.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TopAbs_Orientation.hxx>
#include <TopAbs_ShapeEnum.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS_Shape.hxx>
#include <array>
#include <vector>

namespace KVR
{

/// A representation of a vertex or an edge, by the numbers that the forms have for its kind and for what it refers to.
struct PointRepresentation
{
    enum Kind
    {
        kNone,
        kOnCurve,
        kOnCurveOnSurface,
        kOnSurface,
    };
    int kind = kNone;
    double parameter = 0.0;
    double secondParameter = 0.0;
    int curve = 0;
    int surface = 0;
    int location = 0;
};
struct EdgeRepresentation
{
    enum Kind
    {
        kNone,
        kCurve,
        kCurveOnSurface,
        kCurvesOnClosedSurface,
        kRegularity,
        kPolygon,
        kPolygonOnTriangulation,
        kPolygonsOnClosedTriangulation,
    };
    int kind = kNone;
    /// Of a curve, of a polygon, or of nodes on a triangulation; the second one where there are two.
    int curve = 0;
    int secondCurve = 0;
    /// Or a triangulation.
    int surface = 0;
    int location = 0;
    int secondSurface = 0;
    int secondLocation = 0;
    GeomAbs_Shape continuity = GeomAbs_C0;
    double first = 0.0;
    double last = 0.0;
    bool hasUVPoints = false;
    std::array<double, 4> uvPoints{};
};

/// Makes shapes of what was read and found right, each of those before it. Indices count from 1; the location 0 is
/// none. What Open CASCADE throws passes through.
class ShapeMaker
{
public:
    ShapeMaker() = default;
    /// Lets go of shapes from the last to the first: each while its children are still held, so that the end of a deep
    /// nesting does not run down it on the stack.
    ~ShapeMaker();
    ShapeMaker(ShapeMaker const&) = delete;
    ShapeMaker& operator=(ShapeMaker const&) = delete;

    std::vector<opencascade::handle<Geom2d_Curve>> curves2d;
    std::vector<opencascade::handle<Geom_Curve>> curves;
    std::vector<opencascade::handle<Geom_Surface>> surfaces;
    std::vector<opencascade::handle<Poly_Polygon3D>> polygons;
    std::vector<opencascade::handle<Poly_PolygonOnTriangulation>> nodes;
    std::vector<opencascade::handle<Poly_Triangulation>> triangulations;

    void AddLocation(std::array<double, 12> const& matrix);
    /// Elementary ones, each with its power.
    void AddLocation(std::vector<std::pair<int, int>> const& chain);

    struct Edge
    {
        double tolerance = 0.0;
        bool isSameParameter = false;
        bool isSameRange = false;
        bool isDegenerated = false;
        std::vector<EdgeRepresentation> representations;
    };
    struct Face
    {
        bool isNaturallyBounded = false;
        double tolerance = 0.0;
        int surface = 0;
        int location = 0;
        int triangulation = 0;
    };
    /// For so many shapes.
    void Reserve(std::size_t shapes) { m_shapes.reserve(shapes); }
    /// A new shape, to which children are added until it is done.
    void BeginVertex(std::array<double, 3> const& point, double tolerance, std::vector<PointRepresentation> const& all);
    void BeginEdge(Edge const& edge);
    /// Without a surface it has a tolerance, a place and a bound only if that is said.
    void BeginFace(Face const& face, bool isAllKept);
    void BeginOther(TopAbs_ShapeEnum kind);
    void AddChild(int shape, TopAbs_Orientation orientation, int location);
    /// Flags from the first to the last of Open CASCADE's.
    void EndShape(std::array<bool, 7> const& flags);
    /// Of the shape just ended, a face of a version that does not keep where its edges end on it.
    void MeasureFace();

    /// Until it is placed elsewhere.
    TopoDS_Shape const& Placed(int shape, TopAbs_Orientation orientation, int location);

private:
    template <class Items>
    static auto const& At(Items const& items, int index)
    {
        return items[static_cast<std::size_t>(index) - 1];
    }
    bool AreApart(Edge const& edge) const;
    void AddApart(Edge const& edge, EdgeRepresentation const& representation);
    void AddByBuilder(Edge const& edge, EdgeRepresentation const& representation);
    void AddPolygon(EdgeRepresentation const& representation);

    /// The first is none.
    std::vector<TopLoc_Location> m_locations{1};
    std::vector<TopoDS_Shape> m_shapes;
    TopoDS_Shape m_shape;
};

}  // namespace KVR
