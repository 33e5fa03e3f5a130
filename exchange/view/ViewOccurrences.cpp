#include "exchange/view/ViewOccurrences.h"

#include <cmath>

namespace KVR
{

namespace
{

// For -1 in place of no index.
long long NumberOf(std::size_t index)
{
    return index == kNoIndex ? -1 : static_cast<long long>(index);
}

using NamedColumn = std::pair<char const*, ViewColumn const*>;

std::string ObjectOf(std::initializer_list<NamedColumn> columns)
{
    std::string text;
    for (auto const& [name, column] : columns)
    {
        text += text.empty() ? "{\"" : ",\"";
        text += name;
        text += "\":" + column->List();
    }
    return text + '}';
}

// Takes in the box around a box after a transform.
void Include(std::optional<SceneBox>& all, SceneBox const& box, Matrix const& place)
{
    for (unsigned corner = 0; corner < 8; ++corner)
    {
        std::array<double, 3> point{};
        for (std::size_t row = 0; row < 3; ++row)
        {
            point[row] = place[4 * row + 3];
            for (std::size_t axis = 0; axis < 3; ++axis)
                point[row] += place[4 * row + axis] * ((corner >> axis) & 1U ? box.high[axis] : box.low[axis]);
        }
        if (std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]))
            all = SceneBox::Around(all, point);
    }
}

}  // namespace

ViewOccurrences::ViewOccurrences(ExportTask& task, ViewIndex const& index, ViewStyles const& styles,
                                 ViewGeometry const& geometry, ViewTransforms& transforms)
    : m_scene(task.scene), m_index(index), m_styles(styles), m_geometry(geometry), m_transforms(transforms)
{
    // Of each level down to the current one, the occurrence.
    std::vector<std::size_t> path;
    for (OccurrenceWalk walk(m_scene); walk.Next();)
    {
        task.NextOccurrence();
        path.resize(walk.Depth());
        std::size_t const parent = path.empty() ? kNoIndex : path.back();
        path.push_back(Count());
        Add(walk, parent);
        AddItems(walk);
    }
}

void ViewOccurrences::Add(OccurrenceWalk const& walk, std::size_t parent)
{
    OccurrenceState const& state = walk.State();
    std::size_t const placement =
        parent == kNoIndex ? kNoIndex : m_index.PlacementAt(m_components[parent], walk.PlacementIndex());
    m_occurrenceLists.component.Add(m_index.ComponentAt(walk.ComponentIndex()));
    m_occurrenceLists.parent.Add(NumberOf(parent));
    m_occurrenceLists.placement.Add(NumberOf(placement));
    m_occurrenceLists.transform.Add(m_transforms.IndexOf(walk.Step()));
    m_occurrenceLists.visible.Add(state.showsItself ? 1 : 0);
    m_occurrenceLists.style.Add(m_styles.IndexOf(state.imposedStyle));
    m_components.push_back(walk.ComponentIndex());
    m_parents.push_back(parent);
    m_placements.push_back(walk.PlacementIndex());
}

void ViewOccurrences::AddItems(OccurrenceWalk const& walk)
{
    SceneComponent const& component = walk.Component();
    OccurrenceState const& state = walk.State();
    for (std::size_t place = 0; place < component.geometry.size(); ++place)
    {
        SceneGeometry const& geometry = component.geometry[place];
        std::size_t const number = m_index.GeometryAt(walk.ComponentIndex(), place);
        int const mesh = m_geometry.MeshOf(number);
        bool const isNote = m_geometry.IsNote(number);
        if (mesh < 0 && !isNote)
            continue;
        // What draws a callout is in its component's coordinates.
        Matrix const own = isNote ? kIdentity : state.PlaceOf(geometry, component);
        m_itemLists.occurrence.Add(Count() - 1);
        m_itemLists.geometry.Add(number);
        m_itemLists.transform.Add(m_transforms.IndexOf(own));
        m_itemLists.visible.Add(state.ShowsItself(geometry) ? 1 : 0);
        m_itemLists.style.Add(m_styles.IndexOf(state.StyleOf(geometry)));
        m_itemLists.keeps.Add(state.KeepsFaceStyles(geometry) ? 1 : 0);
        if (mesh < 0 || !state.IsVisible(geometry))
            continue;
        auto const drawn = static_cast<std::size_t>(mesh);
        m_seenMeshes.resize(std::max(m_seenMeshes.size(), drawn + 1));
        ++m_seenMeshes[drawn];
        m_seen.push_back({Product(walk.Place(), own), drawn});
    }
}

std::optional<SceneBox> ViewOccurrences::Box(ViewGeometry& geometry) const
{
    std::optional<SceneBox> box;
    for (Seen const& seen : m_seen)
        if (auto const& own = geometry.Meshes()[seen.mesh].box)
            Include(box, *own, seen.place);
    return box;
}

void ViewOccurrences::IndexSteps()
{
    for (std::size_t i = 1; i < Count(); ++i)
    {
        ScenePlacement const& placement = m_scene.Components()[m_components[m_parents[i]]].placements[m_placements[i]];
        if (placement.object)
            m_steps.emplace(std::pair(m_parents[i], placement.id), i);
        else
        {
            m_steps.emplace(std::pair(m_parents[i], m_scene.Components()[m_components[i]].id), i);
            m_standing[m_parents[i]].push_back(i);
        }
    }
}

ViewOccurrences::End ViewOccurrences::Find(std::vector<std::string_view> const& path)
{
    if (m_steps.empty())
        IndexSteps();
    End end{0, {}};
    for (std::size_t i = 0; i < path.size(); ++i)
    {
        auto step = m_steps.find({end.occurrence, path[i]});
        if (auto const standing = m_standing.find(end.occurrence);
            step == m_steps.end() && standing != m_standing.end())
            for (std::size_t const below : standing->second)
                if (step == m_steps.end())
                    step = m_steps.find({below, path[i]});
        if (step != m_steps.end())
            end.occurrence = step->second;
        else if (i + 1 == path.size() && path[i] != m_scene.Components()[m_components[end.occurrence]].id)
            end.rest = path[i];
        else if (path[i] != m_scene.Components()[m_components[end.occurrence]].id)
            return {};
    }
    return end;
}

std::string ViewOccurrences::OccurrencesJson() const
{
    auto const& lists = m_occurrenceLists;
    return ObjectOf({{"component", &lists.component},
                     {"parent", &lists.parent},
                     {"placement", &lists.placement},
                     {"transform", &lists.transform},
                     {"visible", &lists.visible},
                     {"style", &lists.style}});
}

std::string ViewOccurrences::ItemsJson() const
{
    auto const& lists = m_itemLists;
    return ObjectOf({{"occurrence", &lists.occurrence},
                     {"geometry", &lists.geometry},
                     {"transform", &lists.transform},
                     {"visible", &lists.visible},
                     {"style", &lists.style},
                     {"keeps", &lists.keeps}});
}

}  // namespace KVR
