#include <map>
#include <set>

#include "exchange/export/NoteDrawing.h"
#include "exchange/view/ViewLooks.h"
#include "framework/api/kvr_api.h"
#include "scene/CurvePoints.h"
#include "scene/SceneNote.h"

namespace KVR
{

namespace
{

ViewJson TextJson(std::vector<SceneNote::Line> const& lines)
{
    ViewJson list = ViewJson::array();
    for (SceneNote::Line const& line : lines)
    {
        ViewJson fragments = ViewJson::array();
        for (SceneNote::Fragment const& fragment : line)
        {
            ViewJson entry{{"text", fragment.text}};
            if (fragment.isBold)
                entry["bold"] = true;
            if (fragment.isItalic)
                entry["italic"] = true;
            fragments.push_back(std::move(entry));
        }
        list.push_back(std::move(fragments));
    }
    return list;
}

// Where what draws a note begins, else where its plane does.
std::optional<std::array<double, 3>> AnchorOf(NoteDrawing const& drawing, ViewMesh const* mesh)
{
    if (mesh && !mesh->primitives.empty() && mesh->primitives.front().positions.size() >= 3)
    {
        std::array<double, 3> anchor = mesh->origin;
        for (std::size_t i = 0; i < 3; ++i)
            anchor[i] += static_cast<double>(mesh->primitives.front().positions[i]);
        return anchor;
    }
    return drawing.plane ? std::optional(drawing.plane->origin) : std::nullopt;
}

// What a note speaks of, without what draws it; each once.
ViewJson TargetsJson(SceneNote const& note, ViewGeometry& geometry)
{
    std::set<std::string_view> ids;
    for (std::string const& reference : note.references)
        ids.insert(reference);
    for (SceneNote::Target const& target : note.targets)
        ids.insert(target.object.id.View());
    // By geometry: its faces and edges, if not all of it is meant.
    std::map<std::size_t, ViewJson> targets;
    for (std::string_view const id : ids)
    {
        ViewPart const* const part = geometry.PartOf(id);
        if (!part)
            continue;
        ViewJson& entry = targets[part->geometry];
        entry["geometry"] = part->geometry;
        if (part->kind != ViewPart::Kind::kWhole)
            entry[part->kind == ViewPart::Kind::kFace ? "faces" : "edges"].push_back(part->number);
    }
    ViewJson list = ViewJson::array();
    for (auto& [number, entry] : targets)
        list.push_back(std::move(entry));
    return list;
}

ViewJson NoteJson(ExportTask& task, SceneComponent const& component, IAnnotationCallout const& callout,
                  std::size_t number, ViewGeometry& geometry)
{
    SceneNote const note = SceneNote::Of(task.producer, callout);
    NoteDrawing const drawing = NoteDrawing::Of(task.producer, callout, component.metresPerUnit);
    ViewJson entry{{"geometry", number}, {"id", note.id.View()}, {"label", UTF8String(note.label).View()}};
    SetText(entry, "kind", note.kind);
    entry["visible"] = note.isVisible;
    if (note.text)
        entry["text"] = TextJson(*note.text);
    if (drawing.textHeight > 0.0)
        entry["height"] = drawing.textHeight;
    if (drawing.plane)
        entry["plane"] = {{"origin", JsonOf(drawing.plane->origin)},
                          {"normal", JsonOf(drawing.plane->normal)},
                          {"reference", JsonOf(drawing.plane->reference)}};
    int const mesh = geometry.MeshOf(number);
    SetOptional(entry, "anchor",
                AnchorOf(drawing, mesh < 0 ? nullptr : &geometry.Meshes()[static_cast<std::size_t>(mesh)]));
    if (ViewJson targets = TargetsJson(note, geometry); !targets.empty())
        entry["targets"] = std::move(targets);
    ViewJson details = ViewJson::parse(note.details, nullptr, false);
    if (details.is_object())
        entry["details"] = std::move(details);
    return entry;
}

}  // namespace

ViewJson NotesJson(ExportTask& task, ViewIndex const& index, ViewGeometry& geometry)
{
    ViewJson list = ViewJson::array();
    for (std::size_t const place : index.Components())
    {
        SceneComponent const& component = task.scene.Components()[place];
        for (std::size_t i = 0; i < component.geometry.size(); ++i)
            if (auto const* const callout = dynamic_cast<IAnnotationCallout const*>(component.geometry[i].object))
                list.push_back(NoteJson(task, component, *callout, index.GeometryAt(place, i), geometry));
    }
    return list;
}

}  // namespace KVR
