#include "framework/kernel/store/ShapeMaker.h"

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Curve3D.hxx>
#include <BRep_CurveOn2Surfaces.hxx>
#include <BRep_CurveOnClosedSurface.hxx>
#include <BRep_CurveOnSurface.hxx>
#include <BRep_CurveRepresentation.hxx>
#include <BRep_GCurve.hxx>
#include <BRep_ListOfCurveRepresentation.hxx>
#include <BRep_ListOfPointRepresentation.hxx>
#include <BRep_PointOnCurve.hxx>
#include <BRep_PointOnCurveOnSurface.hxx>
#include <BRep_PointOnSurface.hxx>
#include <BRep_TEdge.hxx>
#include <BRep_TFace.hxx>
#include <BRep_TVertex.hxx>
#include <Geom2d_OffsetCurve.hxx>
#include <Geom2d_TrimmedCurve.hxx>
#include <Precision.hxx>
#include <TopoDS.hxx>
#include <TopoDS_CompSolid.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shell.hxx>
#include <TopoDS_Solid.hxx>
#include <TopoDS_Vertex.hxx>
#include <TopoDS_Wire.hxx>
#include <algorithm>
#include <gp_Trsf.hxx>

namespace KVR
{

namespace
{

using opencascade::handle;

bool IsOnSurface(EdgeRepresentation const& representation) noexcept
{
    return representation.kind == EdgeRepresentation::kCurveOnSurface ||
           representation.kind == EdgeRepresentation::kCurvesOnClosedSurface;
}

// At whose ends there need not be a point.
bool MayLackEnds(Geom2d_Curve const& curve)
{
    handle<Standard_Type> const& type = curve.DynamicType();
    return type == STANDARD_TYPE(Geom2d_OffsetCurve) || type == STANDARD_TYPE(Geom2d_TrimmedCurve);
}

}  // namespace

ShapeMaker::~ShapeMaker()
{
    m_shape.Nullify();
    while (!m_shapes.empty())
        m_shapes.pop_back();
}

void ShapeMaker::AddLocation(std::array<double, 12> const& matrix)
{
    gp_Trsf transform;
    transform.SetValues(matrix[0], matrix[1], matrix[2], matrix[3], matrix[4], matrix[5], matrix[6], matrix[7],
                        matrix[8], matrix[9], matrix[10], matrix[11]);
    m_locations.emplace_back(transform);
}

void ShapeMaker::AddLocation(std::vector<std::pair<int, int>> const& chain)
{
    TopLoc_Location location;
    for (auto const& [index, power] : chain)
        location = m_locations[static_cast<std::size_t>(index)].Powered(power) * location;
    m_locations.push_back(location);
}

void ShapeMaker::BeginVertex(std::array<double, 3> const& point, double tolerance,
                             std::vector<PointRepresentation> const& all)
{
    m_shape.Nullify();
    BRep_Builder().MakeVertex(TopoDS::Vertex(m_shape));
    auto& vertex = static_cast<BRep_TVertex&>(*m_shape.TShape());
    vertex.Pnt(gp_Pnt(point[0], point[1], point[2]));
    vertex.UpdateTolerance(tolerance);
    for (PointRepresentation const& one : all)
    {
        TopLoc_Location const& location = m_locations[static_cast<std::size_t>(one.location)];
        handle<BRep_PointRepresentation> placed;
        if (one.kind == PointRepresentation::kOnCurve)
            placed = new BRep_PointOnCurve(one.parameter, At(curves, one.curve), location);
        else if (one.kind == PointRepresentation::kOnCurveOnSurface)
            placed = new BRep_PointOnCurveOnSurface(one.parameter, At(curves2d, one.curve), At(surfaces, one.surface),
                                                    location);
        else
            placed = new BRep_PointOnSurface(one.parameter, one.secondParameter, At(surfaces, one.surface), location);
        vertex.ChangePoints().Append(placed);
    }
}

void ShapeMaker::BeginEdge(Edge const& edge)
{
    BRep_Builder const builder;
    m_shape.Nullify();
    TopoDS_Edge& made = TopoDS::Edge(m_shape);
    builder.MakeEdge(made);
    builder.SameParameter(made, edge.isSameParameter);
    builder.SameRange(made, edge.isSameRange);
    builder.Degenerated(made, edge.isDegenerated);
    bool const areApart = AreApart(edge);
    for (EdgeRepresentation const& one : edge.representations)
    {
        if (one.kind >= EdgeRepresentation::kPolygon)
            AddPolygon(one);
        else if (areApart)
            AddApart(edge, one);
        else
            AddByBuilder(edge, one);
    }
}

// Whether each representation is one of its own. Open CASCADE's builder goes through all that an edge has for each that
// it adds: one may take the place of another, or take its range or its continuity; and on surfaces it finds the ends of
// the curve itself before those of its range, and keeps them where that has none. In an edge in which nothing comes of
// that, they are simply put behind one another.
bool ShapeMaker::AreApart(Edge const& edge) const
{
    constexpr std::size_t kMost = 16;
    std::vector<EdgeRepresentation> const& all = edge.representations;
    if (edge.isDegenerated || all.size() > kMost)
        return false;
    int inSpace = 0;
    int seams = 0;
    int regularities = 0;
    for (auto one = all.begin(); one != all.end(); ++one)
    {
        inSpace += one->kind == EdgeRepresentation::kCurve ? 1 : 0;
        regularities += one->kind == EdgeRepresentation::kRegularity ? 1 : 0;
        if (!IsOnSurface(*one))
            continue;
        bool const isSeam = one->kind == EdgeRepresentation::kCurvesOnClosedSurface;
        seams += isSeam ? 1 : 0;
        if (Precision::IsInfinite(one->first) || Precision::IsInfinite(one->last) ||
            MayLackEnds(*At(curves2d, one->curve)) || (isSeam && MayLackEnds(*At(curves2d, one->secondCurve))))
            return false;
        auto const isSame = [&](EdgeRepresentation const& other)
        { return IsOnSurface(other) && other.surface == one->surface && other.location == one->location; };
        if (std::any_of(all.begin(), one, isSame))
            return false;
    }
    return inSpace <= 1 && regularities <= 1 && (seams == 0 || regularities == 0);
}

void ShapeMaker::AddApart(Edge const& edge, EdgeRepresentation const& one)
{
    auto& made = static_cast<BRep_TEdge&>(*m_shape.TShape());
    // It stands in the list before it is made, so that its references are counted once.
    made.ChangeCurves().Append(handle<BRep_CurveRepresentation>());
    handle<BRep_CurveRepresentation>& representation = made.ChangeCurves().Last();
    TopLoc_Location const& location = m_locations[static_cast<std::size_t>(one.location)];
    if (one.kind == EdgeRepresentation::kRegularity)
    {
        representation =
            new BRep_CurveOn2Surfaces(At(surfaces, one.surface), At(surfaces, one.secondSurface), location,
                                      m_locations[static_cast<std::size_t>(one.secondLocation)], one.continuity);
        return;
    }
    if (one.kind == EdgeRepresentation::kCurve)
        representation = new BRep_Curve3D(At(curves, one.curve), location);
    else if (one.kind == EdgeRepresentation::kCurveOnSurface)
        representation = new BRep_CurveOnSurface(At(curves2d, one.curve), At(surfaces, one.surface), location);
    else
        representation = new BRep_CurveOnClosedSurface(At(curves2d, one.curve), At(curves2d, one.secondCurve),
                                                       At(surfaces, one.surface), location, one.continuity);
    static_cast<BRep_GCurve&>(*representation).SetRange(one.first, one.last);
    made.UpdateTolerance(edge.tolerance);
}

void ShapeMaker::AddByBuilder(Edge const& edge, EdgeRepresentation const& one)
{
    BRep_Builder const builder;
    TopoDS_Edge const& made = TopoDS::Edge(m_shape);
    TopLoc_Location const& location = m_locations[static_cast<std::size_t>(one.location)];
    if (one.kind == EdgeRepresentation::kCurve)
    {
        builder.UpdateEdge(made, At(curves, one.curve), location, edge.tolerance);
        builder.Range(made, one.first, one.last, Standard_True);
        return;
    }
    handle<Geom_Surface> const& surface = At(surfaces, one.surface);
    if (one.kind == EdgeRepresentation::kRegularity)
    {
        builder.Continuity(made, surface, At(surfaces, one.secondSurface), location,
                           m_locations[static_cast<std::size_t>(one.secondLocation)], one.continuity);
        return;
    }
    handle<Geom2d_Curve> const& curve = At(curves2d, one.curve);
    gp_Pnt2d const first(one.uvPoints[0], one.uvPoints[1]);
    gp_Pnt2d const last(one.uvPoints[2], one.uvPoints[3]);
    if (one.kind == EdgeRepresentation::kCurvesOnClosedSurface)
    {
        handle<Geom2d_Curve> const& second = At(curves2d, one.secondCurve);
        if (one.hasUVPoints)
            builder.UpdateEdge(made, curve, second, surface, location, edge.tolerance, first, last);
        else
            builder.UpdateEdge(made, curve, second, surface, location, edge.tolerance);
        builder.Continuity(made, surface, surface, location, location, one.continuity);
    }
    else if (one.hasUVPoints)
        builder.UpdateEdge(made, curve, surface, location, edge.tolerance, first, last);
    else
        builder.UpdateEdge(made, curve, surface, location, edge.tolerance);
    builder.Range(made, surface, location, one.first, one.last);
}

void ShapeMaker::AddPolygon(EdgeRepresentation const& one)
{
    BRep_Builder const builder;
    TopoDS_Edge const& made = TopoDS::Edge(m_shape);
    TopLoc_Location const& location = m_locations[static_cast<std::size_t>(one.location)];
    if (one.kind == EdgeRepresentation::kPolygon)
        builder.UpdateEdge(made, At(polygons, one.curve), location);
    else if (one.kind == EdgeRepresentation::kPolygonOnTriangulation)
        builder.UpdateEdge(made, At(nodes, one.curve), At(triangulations, one.surface), location);
    else
        builder.UpdateEdge(made, At(nodes, one.curve), At(nodes, one.secondCurve), At(triangulations, one.surface),
                           location);
}

void ShapeMaker::BeginFace(Face const& face, bool isAllKept)
{
    m_shape.Nullify();
    BRep_Builder().MakeFace(TopoDS::Face(m_shape));
    auto& made = static_cast<BRep_TFace&>(*m_shape.TShape());
    if (face.surface != 0 || isAllKept)
    {
        if (face.surface != 0)
            made.Surface(At(surfaces, face.surface));
        made.Tolerance(face.tolerance);
        made.Location(m_locations[static_cast<std::size_t>(face.location)]);
        made.NaturalRestriction(face.isNaturallyBounded);
    }
    if (face.triangulation != 0)
        BRep_Builder().UpdateFace(TopoDS::Face(m_shape), At(triangulations, face.triangulation));
}

void ShapeMaker::BeginOther(TopAbs_ShapeEnum kind)
{
    TopoDS_Builder const builder;
    m_shape.Nullify();
    if (kind == TopAbs_WIRE)
        builder.MakeWire(TopoDS::Wire(m_shape));
    else if (kind == TopAbs_SHELL)
        builder.MakeShell(TopoDS::Shell(m_shape));
    else if (kind == TopAbs_SOLID)
        builder.MakeSolid(TopoDS::Solid(m_shape));
    else if (kind == TopAbs_COMPSOLID)
        builder.MakeCompSolid(TopoDS::CompSolid(m_shape));
    else
        builder.MakeCompound(TopoDS::Compound(m_shape));
}

// A shape that is copied counts its references up and down, each time with a lock: it is placed where it stands, as it
// is each time before it is used.
void ShapeMaker::AddChild(int shape, TopAbs_Orientation orientation, int location)
{
    TopoDS_Builder().Add(m_shape, Placed(shape, orientation, location));
}

TopoDS_Shape const& ShapeMaker::Placed(int shape, TopAbs_Orientation orientation, int location)
{
    TopoDS_Shape& placed = m_shapes[static_cast<std::size_t>(shape) - 1];
    placed.Orientation(orientation);
    placed.Location(m_locations[static_cast<std::size_t>(location)], Standard_False);
    return placed;
}

void ShapeMaker::EndShape(std::array<bool, 7> const& flags)
{
    TopoDS_TShape& made = *m_shape.TShape();
    made.Free(flags[0]);
    made.Modified(flags[1]);
    made.Checked(flags[2]);
    made.Orientable(flags[3]);
    made.Closed(flags[4]);
    made.Infinite(flags[5]);
    made.Convex(flags[6]);
    m_shapes.push_back(std::move(m_shape));
    m_shape = TopoDS_Shape();
}

void ShapeMaker::MeasureFace()
{
    BRepTools::Update(TopoDS::Face(m_shapes.back()));
}

}  // namespace KVR
