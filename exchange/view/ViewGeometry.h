#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "exchange/export/ExportTask.h"
#include "exchange/view/ViewIndex.h"
#include "exchange/view/ViewMesh.h"
#include "exchange/view/ViewStyles.h"
#include "exchange/view/ViewText.h"
#include "scene/ShapeMeasures.h"

namespace KVR
{

/// A face or edge of a geometry, or all of it.
struct ViewPart
{
    enum class Kind
    {
        kWhole,
        kFace,
        kEdge
    };

    std::size_t geometry = kNoIndex;
    Kind kind = Kind::kWhole;
    std::uint32_t number = 0;
};

/// The geometry of a viewer file: an entry for each piece of each component, and the meshes that they are drawn with,
/// each once.
class ViewGeometry
{
public:
    /// Reads all of it. What is named must outlive it. Counts what there is nothing to draw of.
    ViewGeometry(ExportTask& task, ViewIndex const& index, ViewStyles const& styles);

    /// The mesh of a geometry, by their numbers; -1 for none.
    int MeshOf(std::size_t geometry) const { return m_meshOf[geometry]; }
    /// Whether it is an annotation callout.
    bool IsNote(std::size_t geometry) const { return m_isNote[geometry]; }
    std::vector<ViewMesh>& Meshes() noexcept { return m_meshes; }

    /// What geometry, face or edge has that id, data id or persistent id; none for null. Of several the first.
    ViewPart const* PartOf(std::string_view id);

    /// A list; counts are those that the meshes have by then.
    ViewJson Json() const;

private:
    /// What all geometry of one object shares.
    struct Object
    {
        int mesh = -1;
        /// Members of the entry.
        ViewJson members = ViewJson::object();
        std::vector<SceneMesh::Face> faces;
        std::vector<SceneMesh::Edge> edges;
    };

    void AddEntry(std::size_t component, std::size_t place);
    Object const& ObjectOf(SceneComponent const& component, SceneGeometry const& geometry);
    void MakeMesh(Object& object, SceneComponent const& component, SceneGeometry const& geometry);
    void AddSurface(Object& object, SceneMesh&& mesh, ShapeMeasures const* body);
    void AddLines(Object& object, SceneLines const& lines, ShapeMeasures const& measures);
    void TellBody(ViewJson& entry, SceneComponent const& component, SceneGeometry const& geometry);
    ShapeMeasures const* MeasuresOf(IBrep const& body);
    void Take(Object& object, ViewMesh&& mesh);

    ExportTask& m_task;
    ViewIndex const& m_index;
    ViewStyles const& m_styles;
    std::vector<ViewMesh> m_meshes;
    std::vector<int> m_meshOf;
    std::vector<bool> m_isNote;
    std::vector<ViewJson> m_entries;
    /// By number, for ids.
    std::vector<SceneGeometry const*> m_sources;
    std::vector<Object const*> m_objectOf;
    std::unordered_map<IObject const*, Object> m_objects;
    std::unordered_map<IObject const*, ShapeMeasures> m_measures;
    std::unordered_map<std::string_view, ViewPart> m_parts;
};

}  // namespace KVR
