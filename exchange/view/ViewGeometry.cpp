#include "exchange/view/ViewGeometry.h"

#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <cmath>
#include <limits>

#include "exchange/export/NoteDrawing.h"
#include "exchange/view/ViewComponents.h"
#include "exchange/view/ViewMeasures.h"
#include "framework/api/kvr_api.h"
#include "framework/kernel/entity.h"
#include "scene/CurveShape.h"
#include "scene/ScenePoints.h"

namespace KVR
{

namespace
{

char const* KindText(SceneGeometry const& geometry)
{
    switch (geometry.kind)
    {
        case GeometryKind::kBody:
            return "body";
        case GeometryKind::kMesh:
            return "mesh";
        case GeometryKind::kCurve:
            return "curve";
        case GeometryKind::kPoint:
            return "point";
        case GeometryKind::kCloud:
            return "cloud";
        case GeometryKind::kOther:
            break;
    }
    return dynamic_cast<IAnnotationCallout const*>(geometry.object) ? "note" : "other";
}

SceneGeometry const* BodyOf(SceneComponent const& component, SceneGeometry const& mesh)
{
    if (mesh.bodyId.empty())
        return nullptr;
    auto const found = std::find_if(component.geometry.begin(), component.geometry.end(),
                                    [&](SceneGeometry const& one) { return one.body && one.id == mesh.bodyId; });
    return found == component.geometry.end() ? nullptr : &*found;
}

// What draws a callout, in the unit and the coordinates of its component.
SceneLines LinesOf(NoteDrawing const& drawing, CurveTolerance const& tolerance)
{
    SceneLines placed;
    for (NoteDrawing::Curve const& curve : drawing.curves)
    {
        Matrix const m = Product(Scaling(curve.scale), curve.transform);
        SceneLines const lines = CurvePoints::Of(*curve.curve, tolerance);
        for (std::size_t i = 0; i < lines.Count(); ++i)
        {
            std::vector<double> points;
            std::span<double const> const line = lines.At(i);
            for (std::size_t p = 0; p + 2 < line.size(); p += 3)
                for (std::size_t row = 0; row < 12; row += 4)
                    points.push_back(m[row] * line[p] + m[row + 1] * line[p + 1] + m[row + 2] * line[p + 2] +
                                     m[row + 3]);
            if (std::all_of(points.begin(), points.end(),
                            [](double x) { return std::abs(x) <= std::numeric_limits<float>::max(); }))
                placed.Add(points);
        }
    }
    return placed;
}

}  // namespace

ViewGeometry::ViewGeometry(ExportTask& task, ViewIndex const& index, ViewStyles const& styles)
    : m_task(task), m_index(index), m_styles(styles)
{
    for (std::size_t const component : index.Components())
        for (std::size_t place = 0; place < task.scene.Components()[component].geometry.size(); ++place)
            AddEntry(component, place);
}

void ViewGeometry::AddEntry(std::size_t componentPlace, std::size_t place)
{
    SceneComponent const& component = m_task.scene.Components()[componentPlace];
    SceneGeometry const& geometry = component.geometry[place];
    Object const& object = ObjectOf(component, geometry);
    ViewJson& entry = m_entries.emplace_back();
    entry = {{"kind", KindText(geometry)},
             {"class", geometry.className},
             {"id", geometry.id},
             {"label", geometry.label},
             {"metres", geometry.metresPerUnit}};
    if (object.mesh >= 0)
        entry["mesh"] = object.mesh;
    if (SceneGeometry const* const body = BodyOf(component, geometry))
        entry["body"] = m_index.GeometryAt(componentPlace, static_cast<std::size_t>(body - component.geometry.data()));
    m_styles.Set(entry, geometry.style);
    if (!geometry.isVisible)
        entry["visible"] = false;
    SetIdentity(entry, m_task.scene, geometry.object);
    if (geometry.body)
        TellBody(entry, component, geometry);
    for (auto const& [name, value] : object.members.items())
        entry[name] = value;
    m_meshOf.push_back(object.mesh);
    m_isNote.push_back(dynamic_cast<IAnnotationCallout const*>(geometry.object) != nullptr);
    m_sources.push_back(&geometry);
    m_objectOf.push_back(&object);
}

ViewGeometry::Object const& ViewGeometry::ObjectOf(SceneComponent const& component, SceneGeometry const& geometry)
{
    auto const [entry, isNew] = m_objects.try_emplace(geometry.object);
    if (isNew && !(geometry.body && geometry.hasMesh))
        MakeMesh(entry->second, component, geometry);
    return entry->second;
}

void ViewGeometry::MakeMesh(Object& object, SceneComponent const& component, SceneGeometry const& geometry)
{
    CurveTolerance const tolerance = CurvePoints::ToleranceOf(m_task.options.quality.deflection);
    auto const* const callout = dynamic_cast<IAnnotationCallout const*>(geometry.object);
    if (geometry.mesh)
    {
        SceneMesh mesh = SceneMesh::Of(*geometry.mesh);
        SceneGeometry const* const body = BodyOf(component, geometry);
        if (body)
            mesh.TakeIdsOf(*body->body);
        AddSurface(object, std::move(mesh), body ? MeasuresOf(*body->body) : nullptr);
    }
    else if (geometry.body)
    {
        AddSurface(object, m_task.samples.MeshOf(geometry), MeasuresOf(*geometry.body));
        if (object.mesh < 0 && geometry.body->Body())
            AddLines(object, m_task.samples.LinesOf(geometry), *MeasuresOf(*geometry.body));
    }
    else if (geometry.curve)
    {
        TopoDS_Shape shape;
        MakeCurveShape(*geometry.curve, shape);
        AddLines(object, m_task.samples.LinesOf(geometry), ShapeMeasures::Of(shape));
    }
    else if (geometry.point || geometry.cloud)
    {
        ScenePoints const points = geometry.point ? ScenePoints::Of(*geometry.point) : ScenePoints::Of(*geometry.cloud);
        m_task.notCarried.Add("points whose numbers make no sense", points.broken);
        object.members["points"] = points.Count();
        Take(object, ViewMesh::Of(points));
    }
    else if (callout)
        Take(object,
             ViewMesh::Of(LinesOf(NoteDrawing::Of(m_task.producer, *callout, component.metresPerUnit), tolerance)));
    else
        return m_task.notCarried.Add("objects of the kind " + std::string(geometry.className));
    if (object.mesh < 0 && !callout)
        m_task.notCarried.Add("pieces of geometry with nothing to draw");
}

void ViewGeometry::AddSurface(Object& object, SceneMesh&& mesh, ShapeMeasures const* body)
{
    m_task.notCarried.Add("polygons whose indices make no sense", mesh.brokenPolygons);
    m_task.notCarried.Add("faces that could not be meshed", mesh.facesWithoutTriangles);
    if (!mesh.faces.empty())
    {
        object.members["faceCount"] = mesh.faces.size();
        SetUnlessEmpty(object.members, "faces", FacesJson(mesh, body));
    }
    if (!mesh.edges.empty())
    {
        object.members["edgeCount"] = mesh.edges.size();
        SetUnlessEmpty(object.members, "edges", EdgesJson(mesh, body));
    }
    Take(object, ViewMesh::Of(mesh, [this](std::string_view id) { return m_styles.IndexOf(id); }));
    object.faces = std::move(mesh.faces);
    object.edges = std::move(mesh.edges);
}

void ViewGeometry::AddLines(Object& object, SceneLines const& lines, ShapeMeasures const& measures)
{
    m_task.notCarried.Add("pieces of curves without an end", lines.missing);
    if (lines.IsEmpty())
        return;
    object.members["edgeCount"] = lines.Count();
    object.members["edges"] = EdgesJson(lines, measures);
    Take(object, ViewMesh::Of(lines));
}

void ViewGeometry::Take(Object& object, ViewMesh&& mesh)
{
    if (mesh.IsEmpty())
        return;
    if (mesh.box)
        object.members["box"] = {{"low", JsonOf(mesh.box->low)}, {"high", JsonOf(mesh.box->high)}};
    object.mesh = static_cast<int>(m_meshes.size());
    m_meshes.push_back(std::move(mesh));
}

void ViewGeometry::TellBody(ViewJson& entry, SceneComponent const& component, SceneGeometry const& geometry)
{
    ShapeMeasures const* const measures = MeasuresOf(*geometry.body);
    if (!measures)
        return;
    entry["faceCount"] = measures->faces.size();
    entry["edgeCount"] = measures->edges.size();
    if (measures->area > 0.0)
        entry["area"] = measures->area;
    if (!measures->volume)
        return;
    entry["volume"] = *measures->volume;
    if (auto const density = DensityOf(component))
        entry["mass"] = *measures->volume * std::pow(geometry.metresPerUnit, 3) * *density;
}

ShapeMeasures const* ViewGeometry::MeasuresOf(IBrep const& body)
{
    if (!body.Body())
        return nullptr;
    auto const [entry, isNew] = m_measures.try_emplace(&body);
    if (isNew)
        entry->second = ShapeMeasures::Of(body.Body()->Shape());
    return &entry->second;
}

ViewPart const* ViewGeometry::PartOf(std::string_view id)
{
    if (m_parts.empty())
    {
        for (std::size_t i = 0; i < m_sources.size(); ++i)
            m_parts.emplace(m_sources[i]->id, ViewPart{i});
        auto const add = [&](auto const& list, std::size_t geometry, ViewPart::Kind kind)
        {
            for (std::uint32_t number = 0; number < list.size(); ++number)
                for (std::string const* const name : {&list[number].persistentId, &list[number].dataId})
                    if (!name->empty())
                        m_parts.emplace(*name, ViewPart{geometry, kind, number});
        };
        for (std::size_t i = 0; i < m_objectOf.size(); ++i)
        {
            add(m_objectOf[i]->faces, i, ViewPart::Kind::kFace);
            add(m_objectOf[i]->edges, i, ViewPart::Kind::kEdge);
        }
    }
    auto const found = m_parts.find(id);
    return found == m_parts.end() ? nullptr : &found->second;
}

ViewJson ViewGeometry::Json() const
{
    ViewJson list = ViewJson::array();
    for (std::size_t i = 0; i < m_entries.size(); ++i)
    {
        ViewJson& entry = list.emplace_back(m_entries[i]);
        if (m_meshOf[i] < 0)
            continue;
        ViewMesh const& mesh = m_meshes[static_cast<std::size_t>(m_meshOf[i])];
        if (std::size_t const triangles = mesh.TriangleCount(); triangles > 0)
        {
            entry["triangles"] = triangles;
            entry["vertices"] = mesh.VertexCount();
        }
    }
    return list;
}

}  // namespace KVR
