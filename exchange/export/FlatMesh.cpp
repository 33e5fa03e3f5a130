#include "exchange/export/FlatMesh.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

#include "framework/api/LargePages.h"
#include "framework/api/LengthUnits.h"
#include "framework/api/UnitText.h"
#include "framework/api/kvr_api.h"
#include "scene/OccurrenceWalk.h"
#include "scene/Transform.h"

namespace KVR
{

namespace
{

constexpr unsigned long long kMostOccurrences = 10'000'000;

// The nearest name there is.
std::string_view NameOf(OccurrenceWalk const& walk)
{
    SceneComponent const& component = walk.Component();
    ScenePlacement const* const placement = walk.Placement();
    if (placement && !placement->label.empty())
        return placement->label;
    if (!component.label.empty())
        return component.label;
    for (SceneGeometry const& geometry : component.geometry)
        if (!geometry.label.empty())
            return geometry.label;
    return placement && !placement->id.empty() ? placement->id : component.id;
}

class FlatWalk
{
public:
    FlatWalk(ExportTask& task, std::function<void(FlatLines const&)> const& useLines)
        : m_task(task), m_useLines(useLines)
    {
    }

    // May be called again: meshes and lines are made once.
    void Go(std::function<void(FlatGroup const&)> const& use)
    {
        m_occurrence = {};
        GoThrough(use);
        m_isCounted = true;
    }

private:
    void GoThrough(std::function<void(FlatGroup const&)> const& use)
    {
        double const metres = MetresOf(FlatUnit(m_task));
        Matrix const toFile =
            Scaling(metres == m_task.scene.MetresPerUnit() ? 1.0 : m_task.scene.MetresPerUnit() / metres);
        for (OccurrenceWalk walk(m_task.scene); walk.Next();)
        {
            m_task.NextOccurrence();
            if (!walk.State().isVisible)
            {
                CountNotCarried("hidden occurrences");
                walk.SkipBelow();
                continue;
            }
            if (walk.Component().geometry.empty())
                continue;
            m_occurrence = {m_occurrence.number + 1, std::string(NameOf(walk))};
            Matrix const place = Product(toFile, walk.Place());
            for (SceneGeometry const& geometry : walk.Component().geometry)
                Geometry(geometry, walk, place, use);
        }
    }

    void CountNotCarried(std::string const& kind)
    {
        if (!m_isCounted)
            m_task.notCarried.Add(kind);
    }

    void Geometry(SceneGeometry const& geometry, OccurrenceWalk const& walk, Matrix const& place,
                  std::function<void(FlatGroup const&)> const& use)
    {
        OccurrenceState const& state = walk.State();
        if ((geometry.kind == GeometryKind::kBody && geometry.hasMesh) || m_task.watch.LeavesOut(geometry))
            return;
        if (!state.IsVisible(geometry))
        {
            CountNotCarried("hidden pieces of geometry");
            return;
        }
        bool const hasTriangles = geometry.kind == GeometryKind::kMesh || geometry.kind == GeometryKind::kBody;
        if (geometry.kind == GeometryKind::kOther || geometry.kind == GeometryKind::kCloud ||
            (!hasTriangles && !m_useLines))
        {
            CountNotCarried("objects of the kind " + std::string(geometry.className));
            return;
        }
        Matrix const all = Product(place, state.PlaceOf(geometry, walk.Component()));
        SceneStyle const* const style = state.StyleOf(geometry);
        bool const keeps = state.KeepsFaceStyles(geometry);
        auto const work = m_task.watch.Begin(geometry);
        if (hasTriangles)
        {
            SceneMesh const& mesh = MeshOf(geometry);
            for (SceneMesh::Run const& run : mesh.runs)
                use({mesh, run, all, Mirrors(all),
                     keeps && !run.style.empty() ? m_task.scene.StyleOf(run.style) : style, m_occurrence});
            if (!mesh.runs.empty())
                return;
        }
        SceneLines const none;
        SceneLines const& lines = m_useLines ? LinesOf(geometry) : none;
        if (lines.IsEmpty())
            CountNotCarried("pieces of geometry with nothing to draw");
        else
            m_useLines({lines, all, style, m_occurrence});
    }

    SceneLines const& LinesOf(SceneGeometry const& geometry)
    {
        auto const [entry, isNew] = m_lines.try_emplace(geometry.object);
        if (isNew)
            entry->second = geometry.point ? LineOf(*geometry.point) : m_task.samples.LinesOf(geometry);
        return entry->second;
    }

    static SceneLines LineOf(IPoint const& place)
    {
        std::array<double, 3> const point{place.X(), place.Y(), place.Z()};
        constexpr double kMost = std::numeric_limits<float>::max();
        SceneLines lines;
        if (std::all_of(point.begin(), point.end(), [](double x) { return std::abs(x) <= kMost; }))
            lines.Add(point);
        return lines;
    }

    SceneMesh const& MeshOf(SceneGeometry const& geometry)
    {
        auto const [entry, isNew] = m_meshes.try_emplace(geometry.object);
        if (isNew)
        {
            SceneMesh& mesh = entry->second;
            mesh = geometry.mesh ? SceneMesh::Of(*geometry.mesh) : m_task.samples.MeshOf(geometry);
            m_task.notCarried.Add("polygons whose indices make no sense", mesh.brokenPolygons);
            m_task.notCarried.Add("faces that could not be meshed", mesh.facesWithoutTriangles);
        }
        return entry->second;
    }

    ExportTask& m_task;
    /// Whether a walk has been through and counted what is not carried.
    bool m_isCounted = false;
    std::function<void(FlatLines const&)> const& m_useLines;
    FlatOccurrence m_occurrence;
    std::unordered_map<IObject const*, SceneMesh> m_meshes;
    std::unordered_map<IObject const*, SceneLines> m_lines;
};

}  // namespace

UnitTypeEnum FlatUnit(ExportTask& task)
{
    UnitTypeEnum const unit = task.options.unit.value_or(task.scene.Unit());
    if (task.options.unit && task.remarks.empty())
        task.remarks.push_back("its unit of length: " + FlatUnitName(unit));
    return unit;
}

std::string FlatUnitName(UnitTypeEnum unit)
{
    // Behind the prefix that all of them have.
    std::string name = std::string(TextOfUnit(unit)).substr(std::string_view("kUnitType_").size());
    name.front() = static_cast<char>(name.front() - 'A' + 'a');
    return name;
}

void ForEachTriangleGroup(ExportTask& task, std::function<void(FlatGroup const&)> const& use,
                          std::function<void(FlatLines const&)> const& useLines)
{
    RefuseMoreOccurrences(task.scene, kMostOccurrences);
    FlatWalk(task, useLines).Go(use);
}

void ForEachTriangleGroupTwice(ExportTask& task, std::function<void(FlatGroup const&)> const& first,
                               std::function<void(FlatGroup const&)> const& second)
{
    RefuseMoreOccurrences(task.scene, kMostOccurrences);
    std::function<void(FlatLines const&)> const noLines;
    FlatWalk walk(task, noLines);
    walk.Go(first);
    walk.Go(second);
}

namespace
{

std::array<double, 3> Turned(std::array<double, 3> const& v, std::array<double, 9> const& rows)
{
    return {rows[0] * v[0] + rows[1] * v[1] + rows[2] * v[2], rows[3] * v[0] + rows[4] * v[1] + rows[5] * v[2],
            rows[6] * v[0] + rows[7] * v[1] + rows[8] * v[2]};
}

}  // namespace

std::array<float, 3> PlacedPoint(Matrix const& transform, double const* point)
{
    std::array<float, 3> placed{};
    for (std::size_t row = 0; row < 3; ++row)
        placed[row] = static_cast<float>(transform[4 * row] * point[0] + transform[4 * row + 1] * point[1] +
                                         transform[4 * row + 2] * point[2] + transform[4 * row + 3]);
    return placed;
}

void PlaceVertices(FlatGroup const& group, std::vector<std::array<float, 3>>& vertices)
{
    vertices.clear();
    if (vertices.capacity() < group.run.vertexCount)
    {
        vertices.reserve(group.run.vertexCount);
        AdviseLargePages(vertices.data(), group.run.vertexCount * sizeof vertices.front());
    }
    double const* const first = group.mesh.positions.data() + 3 * group.run.firstVertex;
    for (std::size_t i = 0; i < group.run.vertexCount; ++i)
        vertices.push_back(PlacedPoint(group.transform, first + 3 * i));
}

std::array<float, 3> NormalOf(FlatGroup const& group, std::uint32_t index)
{
    // By the cofactors, which keep it at right angles to the surface.
    Matrix const& m = group.transform;
    double const sign = group.isMirrored ? -1.0 : 1.0;
    float const* const normal = group.mesh.normals.data() + 3 * (group.run.firstVertex + index);
    std::array<double, 3> const placed =
        Turned({sign * static_cast<double>(normal[0]), sign * static_cast<double>(normal[1]),
                sign * static_cast<double>(normal[2])},
               {m[5] * m[10] - m[6] * m[9], m[6] * m[8] - m[4] * m[10], m[4] * m[9] - m[5] * m[8],
                m[2] * m[9] - m[1] * m[10], m[0] * m[10] - m[2] * m[8], m[1] * m[8] - m[0] * m[9],
                m[1] * m[6] - m[2] * m[5], m[2] * m[4] - m[0] * m[6], m[0] * m[5] - m[1] * m[4]});
    double const length = std::hypot(placed[0], placed[1], placed[2]);
    if (!(length > 0.0) || !std::isfinite(length))
        return {0.0F, 0.0F, 1.0F};
    return {static_cast<float>(placed[0] / length), static_cast<float>(placed[1] / length),
            static_cast<float>(placed[2] / length)};
}

}  // namespace KVR
