#include "inspect/statistics/GeometryTwins.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepGProp.hxx>
#include <BRep_Tool.hxx>
#include <GProp_GProps.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <tuple>
#include <unordered_set>

#include "framework/api/IBrep.h"
#include "framework/kernel/entity.h"
#include "inspect/statistics/RigidFit.h"
#include "scene/Scene.h"
#include "scene/SceneMesh.h"

namespace KVR
{

namespace
{

constexpr double kMillimetresPerMetre = 1e3;

// What a piece of geometry is compared by.
struct Shape
{
    std::vector<FitPoint> points;
    // What has to be equal: corners of triangles; kinds of edges.
    std::vector<std::uint32_t> words;
    // What has to be nearly equal: areas of faces, lengths of edges.
    std::vector<double> measures;

    double Diagonal() const
    {
        FitPoint low = points.front();
        FitPoint high = low;
        for (FitPoint const& point : points)
            for (std::size_t axis = 0; axis < 3; ++axis)
            {
                low[axis] = std::min(low[axis], point[axis]);
                high[axis] = std::max(high[axis], point[axis]);
            }
        return std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
    }

    // The mean square of the distances from the centre of the points, which no motion changes.
    double Spread() const
    {
        FitPoint centre{};
        auto const count = static_cast<double>(points.size());
        for (FitPoint const& point : points)
            for (std::size_t axis = 0; axis < 3; ++axis)
                centre[axis] += point[axis] / count;
        double sum = 0.0;
        for (FitPoint const& point : points)
            for (std::size_t axis = 0; axis < 3; ++axis)
                sum += (point[axis] - centre[axis]) * (point[axis] - centre[axis]) / count;
        return sum;
    }
};

Shape ShapeOf(IPolygonMesh& mesh, double scale)
{
    Shape shape;
    SceneMesh triangles = SceneMesh::Of(mesh);
    shape.words = std::move(triangles.indices);
    shape.points.reserve(triangles.VertexCount());
    for (std::size_t i = 0; i + 2 < triangles.positions.size(); i += 3)
        shape.points.push_back(
            {scale * triangles.positions[i], scale * triangles.positions[i + 1], scale * triangles.positions[i + 2]});
    return shape;
}

FitPoint Scaled(gp_Pnt const& point, double scale)
{
    return {scale * point.X(), scale * point.Y(), scale * point.Z()};
}

void AddEdge(Shape& shape, TopoDS_Edge const& edge, double scale)
{
    constexpr int kPieces = 4;
    if (BRep_Tool::Degenerated(edge))
        return;
    BRepAdaptor_Curve const curve(edge);
    double const first = curve.FirstParameter();
    double const last = curve.LastParameter();
    shape.words.push_back(static_cast<std::uint32_t>(curve.GetType()));
    for (int i = 0; i <= kPieces && std::abs(first) < 1e100 && std::abs(last) < 1e100; ++i)
        shape.points.push_back(Scaled(curve.Value(first + (last - first) * i / kPieces), scale));
}

void AddFace(Shape& shape, TopoDS_Face const& face, double scale)
{
    GProp_GProps properties;
    BRepGProp::SurfaceProperties(face, properties);
    shape.measures.push_back(scale * scale * properties.Mass());
    shape.points.push_back(Scaled(properties.CentreOfMass(), scale));
}

Shape ShapeOf(TopoDS_Shape const& body, double scale)
{
    Shape shape;
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(body, TopAbs_EDGE, edges);
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(body, TopAbs_FACE, faces);
    try
    {
        for (int i = 1; i <= edges.Extent(); ++i)
            AddEdge(shape, TopoDS::Edge(edges(i)), scale);
        for (int i = 1; i <= faces.Extent(); ++i)
            AddFace(shape, TopoDS::Face(faces(i)), scale);
    }
    catch (Standard_Failure const&)
    {
        // What cannot be followed is no twin of anything.
        return {};
    }
    return shape;
}

Shape ShapeOf(SceneGeometry const& geometry)
{
    double const scale = geometry.metresPerUnit * kMillimetresPerMetre;
    if (geometry.mesh)
        return ShapeOf(*geometry.mesh, scale);
    BODY const* const body = geometry.body->Body();
    return body ? ShapeOf(body->Shape(), scale) : Shape();
}

bool AreNear(double a, double b, double share)
{
    return std::abs(a - b) <= share * std::max(std::abs(a), std::abs(b));
}

bool AreNear(std::vector<double> const& a, std::vector<double> const& b)
{
    // Areas are integrals, and not as exact as points.
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double x, double y) { return AreNear(x, y, 1e-5); });
}

// A piece with what no motion changes: whether it is a mesh, three counts, and its spread.
struct Candidate
{
    SceneGeometry const* geometry;
    std::size_t component;
    std::size_t order;
    std::tuple<bool, std::size_t, std::size_t, std::size_t> counts;
    double spread;
};

std::vector<Candidate> CandidatesOf(Scene const& scene)
{
    std::vector<Candidate> candidates;
    std::unordered_set<IObject const*> known;
    for (std::size_t index = 0; index < scene.Components().size(); ++index)
        for (SceneGeometry const& geometry : scene.Components()[index].geometry)
        {
            if (!(geometry.mesh || geometry.body) || !known.insert(geometry.object).second)
                continue;
            Shape const shape = ShapeOf(geometry);
            if (shape.points.empty())
                continue;
            candidates.push_back(
                {&geometry,
                 index,
                 candidates.size(),
                 {geometry.mesh != nullptr, shape.points.size(), shape.words.size(), shape.measures.size()},
                 shape.Spread()});
        }
    return candidates;
}

// Sets of twins among candidates of the same counts. Those that may be twins stand close together when they are in the
// order of their spreads.
class TwinFinder
{
public:
    explicit TwinFinder(std::vector<Candidate> candidates) : m_candidates(std::move(candidates))
    {
        std::sort(m_candidates.begin(), m_candidates.end(),
                  [](Candidate const& a, Candidate const& b)
                  { return std::tie(a.spread, a.order) < std::tie(b.spread, b.order); });
        m_isTaken.resize(m_candidates.size(), false);
    }

    // Adds the sets, each with the order of its first member.
    void Find(std::vector<std::pair<std::size_t, GeometryTwins>>& found)
    {
        for (std::size_t first = 0; first < m_candidates.size(); ++first)
        {
            if (m_isTaken[first])
                continue;
            std::vector<Candidate> twins = TwinsOf(first);
            if (twins.size() < 2)
                continue;
            std::sort(twins.begin(), twins.end(),
                      [](Candidate const& a, Candidate const& b) { return a.order < b.order; });
            GeometryTwins set;
            set.areMoved = m_areMoved;
            for (Candidate const& twin : twins)
                set.members.push_back({twin.geometry->object, twin.component});
            found.emplace_back(twins.front().order, std::move(set));
        }
    }

private:
    std::vector<Candidate> TwinsOf(std::size_t first)
    {
        // A scene that is made to have many of one spread is not worth more.
        constexpr std::size_t kMostStrangers = 1000;
        std::vector<Candidate> twins{m_candidates[first]};
        m_areMoved = false;
        Shape shape;
        std::size_t strangers = 0;
        for (std::size_t i = first + 1; i < m_candidates.size() && strangers < kMostStrangers; ++i)
        {
            if (!AreNear(m_candidates[first].spread, m_candidates[i].spread, 10 * GeometryTwins::kTolerance))
                break;
            if (m_isTaken[i])
                continue;
            if (shape.points.empty())
                shape = ShapeOf(*m_candidates[first].geometry);
            Shape const other = ShapeOf(*m_candidates[i].geometry);
            bool const isMoved = shape.points != other.points;
            if (shape.words != other.words || !AreNear(shape.measures, other.measures) ||
                (isMoved && !RigidFit(shape.points, other.points, GeometryTwins::kTolerance * shape.Diagonal())))
            {
                ++strangers;
                continue;
            }
            m_isTaken[i] = true;
            m_areMoved = m_areMoved || isMoved;
            twins.push_back(m_candidates[i]);
        }
        return twins;
    }

    std::vector<Candidate> m_candidates;
    std::vector<bool> m_isTaken;
    bool m_areMoved = false;
};

}  // namespace

std::vector<GeometryTwins> GeometryTwins::Of(Scene const& scene)
{
    std::map<decltype(Candidate::counts), std::vector<Candidate>> alike;
    for (Candidate const& candidate : CandidatesOf(scene))
        alike[candidate.counts].push_back(candidate);
    std::vector<std::pair<std::size_t, GeometryTwins>> found;
    for (auto& [counts, candidates] : alike)
        TwinFinder(std::move(candidates)).Find(found);
    std::sort(found.begin(), found.end(), [](auto const& a, auto const& b) { return a.first < b.first; });
    std::vector<GeometryTwins> all;
    for (auto& [order, twins] : found)
        all.push_back(std::move(twins));
    return all;
}

}  // namespace KVR
