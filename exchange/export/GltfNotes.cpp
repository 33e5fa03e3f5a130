#include "exchange/export/GltfNotes.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "exchange/export/GltfPlace.h"
#include "framework/api/kvr_api.h"
#include "scene/SceneNote.h"

namespace KVR
{

namespace
{

using tinygltf::Value;
using Triple = std::array<double, 3>;

// The height of letters where the scene does not say: by the size of what the note is about, else in metres.
constexpr double kHeightOfSize = 1.0 / 60.0;
constexpr double kHeight = 3.5e-3;

// Puts lines where a transform brings them; those beyond what a float holds are left out.
void AddPlaced(SceneLines& to, SceneLines const& lines, Matrix const& m)
{
    for (std::size_t i = 0; i < lines.Count(); ++i)
    {
        std::span<double const> const line = lines.At(i);
        std::vector<double> placed;
        placed.reserve(line.size());
        for (std::size_t p = 0; p + 2 < line.size(); p += 3)
            for (std::size_t row = 0; row < 3; ++row)
                placed.push_back(m[4 * row] * line[p] + m[4 * row + 1] * line[p + 1] + m[4 * row + 2] * line[p + 2] +
                                 m[4 * row + 3]);
        if (std::all_of(placed.begin(), placed.end(),
                        [](double x) { return std::abs(x) <= std::numeric_limits<float>::max(); }))
            to.Add(placed);
    }
}

// From the plane's own coordinates, with x along its reference; nothing for a plane of bad numbers.
std::optional<Matrix> PlaceOf(NoteDrawing::Plane const& plane)
{
    Triple const& z = plane.normal;
    Triple x = plane.reference;
    double const length = std::hypot(z[0], z[1], z[2]);
    double const along = (x[0] * z[0] + x[1] * z[1] + x[2] * z[2]) / (length * length);
    for (std::size_t i = 0; i < 3; ++i)
        x[i] -= along * z[i];
    double const width = std::hypot(x[0], x[1], x[2]);
    Matrix place = kIdentity;
    for (std::size_t i = 0; i < 3; ++i)
    {
        std::size_t const next = (i + 1) % 3;
        std::size_t const last = (i + 2) % 3;
        place[4 * i] = x[i] / width;
        place[4 * i + 1] = (z[next] * x[last] - z[last] * x[next]) / (length * width);
        place[4 * i + 2] = z[i] / length;
        place[4 * i + 3] = plane.origin[i];
    }
    bool const isFinite = std::all_of(place.begin(), place.end(), [](double number) { return std::isfinite(number); });
    return isFinite ? std::optional(place) : std::nullopt;
}

Value NumbersOf(Triple const& triple)
{
    return Value(Value::Array{Value(triple[0]), Value(triple[1]), Value(triple[2])});
}

}  // namespace

GltfNotes::GltfNotes(ExportTask& task, tinygltf::Model& model, GltfPrimitives& primitives, GltfMaterials& materials)
    : m_task(task), m_model(model), m_primitives(primitives), m_materials(materials), m_buffers(model)
{
}

void GltfNotes::Add(OccurrenceWalk const& walk, SceneGeometry const& geometry, IAnnotationCallout const& callout)
{
    m_occurrences.push_back({walk.Place(), &walk.Component(), &geometry, &callout, walk.State().StyleOf(geometry),
                             walk.State().IsVisible(geometry)});
}

std::vector<int> GltfNotes::Write()
{
    m_font = m_occurrences.empty() ? std::nullopt : StrokeFont::Load();
    std::vector<int> nodes;
    for (Occurrence const& occurrence : m_occurrences)
    {
        Note const& note = NoteOf(occurrence);
        tinygltf::Node node;
        std::string const label(occurrence.geometry->label);
        std::string const firstLine = note.drawing.text.substr(0, note.drawing.text.find('\n'));
        node.name = !label.empty() ? label : !firstLine.empty() ? firstLine : std::string(occurrence.geometry->id);
        node.mesh = note.mesh;
        node.extras = ExtrasOf(occurrence, note.drawing);
        if (!occurrence.isVisible)
            HideNode(node, m_model);
        if (GltfPlace const place = GltfPlace::Of(occurrence.place); place.AddTo(node, m_model))
        {
            nodes.push_back(static_cast<int>(m_model.nodes.size()));
            m_model.nodes.push_back(std::move(node));
        }
        else
            m_task.notCarried.Add("annotation callouts of which their transform leaves nothing");
    }
    return nodes;
}

GltfNotes::Note const& GltfNotes::NoteOf(Occurrence const& occurrence)
{
    auto const [entry, isNew] = m_notes.try_emplace(occurrence.callout);
    Note& note = entry->second;
    if (!isNew)
        return note;
    note.drawing = NoteDrawing::Of(m_task.producer, *occurrence.callout, occurrence.component->metresPerUnit);
    SceneLines lines = LinesOf(note.drawing);
    if (lines.IsEmpty())
        lines = TextOf(note.drawing, *occurrence.component);
    if (!lines.IsEmpty())
        note.mesh = MakeMesh(lines, occurrence);
    return note;
}

SceneLines GltfNotes::LinesOf(NoteDrawing const& drawing) const
{
    SceneLines lines;
    CurveTolerance const tolerance = CurvePoints::ToleranceOf(m_task.options.quality.deflection);
    for (NoteDrawing::Curve const& curve : drawing.curves)
        AddPlaced(lines, CurvePoints::Of(*curve.curve, tolerance), Product(Scaling(curve.scale), curve.transform));
    return lines;
}

SceneLines GltfNotes::TextOf(NoteDrawing const& drawing, SceneComponent const& component)
{
    SceneLines lines;
    auto const place = drawing.plane ? PlaceOf(*drawing.plane) : std::nullopt;
    if (!place || !m_font || drawing.text.empty())
        return lines;
    double const height = drawing.textHeight > 0.0 ? drawing.textHeight : TextHeightOf(component);
    // Where several notes stand in one plane, one is below the other.
    std::vector<double> key(place->begin(), place->end());
    key.push_back(component.metresPerUnit);
    double& end = m_textEnds[key];
    Matrix down = kIdentity;
    down[7] = -end;
    AddPlaced(lines, m_font->Strokes(drawing.text, height), Product(*place, down));
    auto const count = 1 + std::count(drawing.text.begin(), drawing.text.end(), '\n');
    end += (static_cast<double>(count) * StrokeFont::kLineStep + 0.5) * height;
    return lines;
}

double GltfNotes::TextHeightOf(SceneComponent const& component) const
{
    double size = 0.0;
    for (SceneGeometry const& geometry : component.geometry)
        size = std::max(size, m_primitives.SizeOf(geometry) * geometry.metresPerUnit / component.metresPerUnit);
    return size > 0.0 ? kHeightOfSize * size : kHeight / component.metresPerUnit;
}

int GltfNotes::MakeMesh(SceneLines const& lines, Occurrence const& occurrence)
{
    std::vector<std::uint32_t> indices;
    std::uint32_t point = 0;
    for (std::size_t const end : lines.ends)
        for (; point < end; ++point)
            if (point + 1 < end)
                indices.insert(indices.end(), {point, point + 1});
    tinygltf::Mesh mesh;
    tinygltf::Primitive& primitive = mesh.primitives.emplace_back();
    primitive.mode = TINYGLTF_MODE_LINE;
    primitive.attributes["POSITION"] = m_buffers.AddPoints(lines.points);
    primitive.indices = m_buffers.AddIndices(indices, 0, lines.points.size() / 3);
    primitive.material = m_materials.Of(occurrence.style, GltfSurface::kCurve);
    m_model.meshes.push_back(std::move(mesh));
    return static_cast<int>(m_model.meshes.size()) - 1;
}

Value GltfNotes::ExtrasOf(Occurrence const& occurrence, NoteDrawing const& drawing) const
{
    Value::Object extras;
    extras["id"] = Value(std::string(occurrence.geometry->id));
    extras["component"] = Value(std::string(occurrence.component->id));
    if (!drawing.text.empty())
        extras["text"] = Value(drawing.text);
    if (std::string const kind = SceneNote::KindOf(*occurrence.callout); !kind.empty())
        extras["annotation"] = Value(kind);
    Value::Array references;
    for (std::string const& id : SceneNote::ReferencesOf(*occurrence.callout))
        references.emplace_back(id);
    if (!references.empty())
        extras["references"] = Value(references);
    if (drawing.plane && PlaceOf(*drawing.plane))
    {
        Value::Object plane;
        plane["origin"] = NumbersOf(drawing.plane->origin);
        plane["normal"] = NumbersOf(drawing.plane->normal);
        plane["reference"] = NumbersOf(drawing.plane->reference);
        extras["plane"] = Value(plane);
    }
    return Value(extras);
}

}  // namespace KVR
