#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "exchange/view/ViewGeometry.h"
#include "exchange/view/ViewTransforms.h"
#include "scene/OccurrenceWalk.h"
#include "scene/SceneBox.h"

namespace KVR
{

/// The occurrences of a viewer file, and what is drawn of them.
class ViewOccurrences
{
public:
    /// Goes through all occurrences. What is named must outlive it.
    ViewOccurrences(ExportTask& task, ViewIndex const& index, ViewStyles const& styles, ViewGeometry const& geometry,
                    ViewTransforms& transforms);

    std::size_t Count() const noexcept { return m_components.size(); }
    /// How often each mesh is drawn where it is seen.
    std::vector<unsigned long long> const& SeenMeshes() const noexcept { return m_seenMeshes; }
    /// Around what is seen; nothing when there is nothing to see.
    std::optional<SceneBox> Box(ViewGeometry& geometry) const;

    /// The occurrence at the end of a path of ids from the root down, which may leave out what stands by itself in a
    /// file, and have what an instance places behind it. What is left is the id of a geometry, or nothing.
    struct End
    {
        std::size_t occurrence = kNoIndex;
        std::optional<std::string_view> rest;
    };
    End Find(std::vector<std::string_view> const& path);
    /// The component of an occurrence, by its place in the scene, and that of the one above; kNoIndex for the root's.
    std::size_t ComponentOf(std::size_t occurrence) const { return m_components[occurrence]; }
    std::size_t AboveOf(std::size_t occurrence) const { return m_parents[occurrence]; }

    /// The objects of both lists, as JSON.
    std::string OccurrencesJson() const;
    std::string ItemsJson() const;

private:
    struct Seen
    {
        Matrix place;
        std::size_t mesh;
    };
    struct StepHash
    {
        std::size_t operator()(std::pair<std::size_t, std::string_view> const& step) const noexcept
        {
            return std::hash<std::string_view>()(step.second) * 31 + step.first;
        }
    };

    void Add(OccurrenceWalk const& walk, std::size_t parent);
    void AddItems(OccurrenceWalk const& walk);
    void IndexSteps();

    Scene const& m_scene;
    ViewIndex const& m_index;
    ViewStyles const& m_styles;
    ViewGeometry const& m_geometry;
    ViewTransforms& m_transforms;
    std::vector<std::size_t> m_components;
    std::vector<std::size_t> m_parents;
    /// In the components above.
    std::vector<std::size_t> m_placements;
    std::vector<unsigned long long> m_seenMeshes;
    std::vector<Seen> m_seen;
    std::unordered_map<std::pair<std::size_t, std::string_view>, std::size_t, StepHash> m_steps;
    /// Of each occurrence those below it that no instance places.
    std::unordered_map<std::size_t, std::vector<std::size_t>> m_standing;

    struct
    {
        ViewColumn component, parent, placement, transform, visible, style;
    } m_occurrenceLists;
    struct
    {
        ViewColumn occurrence, geometry, transform, visible, style, keeps;
    } m_itemLists;
};

}  // namespace KVR
