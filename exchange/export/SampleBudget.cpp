#include "exchange/export/SampleBudget.h"

#include <fmt/format.h>

#include <BRep_Tool.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_BSplineSurface.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <algorithm>
#include <unordered_set>

#include "framework/api/IBrep.h"
#include "framework/kernel/entity.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

// What is too much is tried again so much coarser, and so often.
constexpr double kCoarser = 8.0;
constexpr unsigned kMostTries = 3;
constexpr double kWidestAngle = 1.5;

// What shapes share counts once.
class Weight
{
public:
    explicit Weight(TopoDS_Shape const& shape)
    {
        TopTools_IndexedMapOfShape faces;
        TopExp::MapShapes(shape, TopAbs_FACE, faces);
        for (int i = 1; i <= faces.Extent(); ++i)
            AddFace(TopoDS::Face(faces(i)));
        TopTools_IndexedMapOfShape edges;
        TopExp::MapShapes(shape, TopAbs_EDGE, edges);
        for (int i = 1; i <= edges.Extent(); ++i)
            AddEdge(TopoDS::Edge(edges(i)));
    }

    std::uint64_t Allowance() const noexcept { return m_allowance; }

private:
    void AddFace(TopoDS_Face const& face)
    {
        m_allowance += SampleBudget::kPerFace;
        TopLoc_Location location;
        Handle(Poly_Triangulation) const triangulation = BRep_Tool::Triangulation(face, location);
        // Those that it has already are as they are.
        if (!triangulation.IsNull())
            m_allowance += static_cast<std::uint64_t>(triangulation->NbTriangles());
        Handle(Geom_BSplineSurface) const surface =
            Handle(Geom_BSplineSurface)::DownCast(BRep_Tool::Surface(face, location));
        if (!surface.IsNull() && m_known.insert(surface.get()).second)
            m_allowance += SampleBudget::kPerPole * static_cast<std::uint64_t>(surface->NbUPoles()) *
                           static_cast<std::uint64_t>(surface->NbVPoles());
    }
    void AddEdge(TopoDS_Edge const& edge)
    {
        m_allowance += SampleBudget::kPerEdge;
        double first = 0.0;
        double last = 0.0;
        Handle(Geom_BSplineCurve) const curve =
            Handle(Geom_BSplineCurve)::DownCast(BRep_Tool::Curve(edge, first, last));
        if (!curve.IsNull() && m_known.insert(curve.get()).second)
            m_allowance += SampleBudget::kPerPole * static_cast<std::uint64_t>(curve->NbPoles());
    }

    std::uint64_t m_allowance = 0;
    std::unordered_set<Standard_Transient const*> m_known;
};

}  // namespace

SceneMesh SampleBudget::MeshOf(SceneGeometry const& geometry)
{
    if (!geometry.body->Body())
        return {};
    std::uint64_t const own = Weight(geometry.body->Body()->Shape()).Allowance();
    std::uint64_t const most = own + m_shared;
    MeshQuality quality = m_quality;
    double factor = 1.0;
    for (unsigned tries = 0; tries <= kMostTries; ++tries)
    {
        if (auto mesh = SceneMesh::Of(*geometry.body, quality, most))
        {
            Take(mesh->TriangleCount(), own);
            TellCoarser(geometry, factor, most);
            return std::move(*mesh);
        }
        factor *= kCoarser;
        quality.deflection.value *= kCoarser;
        quality.angle = std::min(2.0 * quality.angle, kWidestAngle);
    }
    m_remarks.push_back(
        fmt::format("{} has no triangles, since they would be more than {}", Escaped(geometry.id), most));
    return {};
}

SceneLines SampleBudget::LinesOf(SceneGeometry const& geometry)
{
    TopoDS_Shape const* const shape =
        geometry.body && geometry.body->Body() ? &geometry.body->Body()->Shape() : nullptr;
    if (!shape && !geometry.curve)
        return {};
    std::uint64_t own = shape ? Weight(*shape).Allowance() : 0;
    CurveTolerance tolerance = CurvePoints::ToleranceOf(m_quality.deflection);
    std::uint64_t first = 0;
    double factor = 1.0;
    for (unsigned tries = 0; tries <= kMostTries; ++tries)
    {
        SceneLines lines = shape ? CurvePoints::OfEdges(*shape, tolerance, own + m_shared)
                                 : CurvePoints::Of(*geometry.curve, tolerance);
        if (!shape)
            own = kPerEdge * lines.Count();
        std::uint64_t const points = lines.points.size() / 3;
        first = std::max(first, points);
        // At its coarsest a curve has the points that it is made of.
        if (points <= own + m_shared || (!shape && tries == kMostTries))
        {
            TellCoarser(geometry, points < first ? factor : 1.0, own + m_shared);
            Take(points, own);
            return lines;
        }
        factor *= kCoarser;
        tolerance.fraction *= kCoarser;
        tolerance.length *= kCoarser;
    }
    m_remarks.push_back(fmt::format("{} has no lines, since they would take more than {} points", Escaped(geometry.id),
                                    own + m_shared));
    return {};
}

void SampleBudget::Take(std::uint64_t count, std::uint64_t own) noexcept
{
    m_shared -= std::min(m_shared, count - std::min(count, own));
}

void SampleBudget::TellCoarser(SceneGeometry const& geometry, double factor, std::uint64_t most)
{
    if (factor > 1.0)
        m_remarks.push_back(
            fmt::format("{} is {:.0f} times as coarse as asked for, since it would take more than {} "
                        "triangles or points",
                        Escaped(geometry.id), factor, most));
}

}  // namespace KVR
