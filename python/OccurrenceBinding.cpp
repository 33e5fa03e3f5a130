#include <pybind11/stl.h>

#include <unordered_map>

#include "framework/api/Exception.h"
#include "inspect/query/Query.h"
#include "python/SceneModel.h"
#include "scene/SceneTotals.h"

namespace KVR::Python
{

namespace
{

// Goes through the occurrences, and keeps the scene.
class Occurrences
{
public:
    Occurrences(ModelPointer model, bool visibleOnly, std::optional<std::size_t> levels)
        : m_model(std::move(model)),
          m_levels(levels),
          m_walk(m_model->scene, visibleOnly ? OccurrenceWalk::Mode::kVisible : OccurrenceWalk::Mode::kAll)
    {
    }

    std::shared_ptr<Occurrence> Next()
    {
        if (!m_hasMore || !(m_hasMore = m_walk.Next()))
            throw py::stop_iteration();
        if (m_levels && m_walk.Depth() >= *m_levels)
            m_walk.SkipBelow();
        return std::make_shared<Occurrence>(m_model, m_walk);
    }

private:
    ModelPointer m_model;
    std::optional<std::size_t> m_levels;
    OccurrenceWalk m_walk;
    bool m_hasMore = true;
};

constexpr unsigned long long kMostRows = 20'000'000;

// What a column of the table is filled with; its numbers become an array's when it is done.
template <class T>
py::array ArrayOfColumn(std::vector<T>&& column, std::vector<py::ssize_t> shape)
{
    auto owner = std::make_unique<std::vector<T>>(std::move(column));
    T const* const data = owner->data();
    py::capsule const base(owner.get(), [](void* kept) { delete static_cast<std::vector<T>*>(kept); });
    static_cast<void>(owner.release());
    return py::array_t<T>(std::move(shape), data, base);
}

struct Columns
{
    std::vector<std::int64_t> parent;
    std::vector<std::int32_t> name;
    std::vector<std::int32_t> component;
    std::vector<std::int32_t> placement;
    std::vector<std::int32_t> depth;
    std::vector<std::uint8_t> visible;
    std::vector<double> transform;
    std::vector<std::string_view> names;

    void Reserve(std::size_t count, bool withTransforms)
    {
        parent.reserve(count);
        for (auto* const column : {&name, &component, &placement, &depth})
            column->reserve(count);
        visible.reserve(count);
        if (withTransforms)
            transform.reserve(count * Matrix().size());
    }
};

// A few parts that are placed often enough make more occurrences than any memory holds.
void Fill(Columns& columns, Scene const& scene, OccurrenceWalk::Mode mode, bool withTransforms, unsigned long long most)
{
    unsigned long long const count = SceneTotals::Of(scene).occurrences;
    if (count > most)
    {
        throw GeneralException(UTF8String("the scene has " + std::to_string(count) +
                                          " occurrences, and the table is to have at most " + std::to_string(most)));
    }
    columns.Reserve(static_cast<std::size_t>(count), withTransforms);
    std::unordered_map<std::string_view, std::int32_t> indexOf;
    std::vector<std::int64_t> rowAt;
    for (OccurrenceWalk walk(scene, mode); walk.Next();)
    {
        std::size_t const depth = walk.Depth();
        rowAt.resize(depth);
        columns.parent.push_back(depth == 0 ? -1 : rowAt.back());
        rowAt.push_back(static_cast<std::int64_t>(columns.parent.size()) - 1);
        std::string_view const name = NameOf(walk.Component(), walk.Placement());
        auto const [entry, isNew] = indexOf.try_emplace(name, static_cast<std::int32_t>(columns.names.size()));
        if (isNew)
            columns.names.push_back(name);
        columns.name.push_back(entry->second);
        columns.component.push_back(static_cast<std::int32_t>(walk.ComponentIndex()));
        columns.placement.push_back(depth == 0 ? -1 : static_cast<std::int32_t>(walk.PlacementIndex()));
        columns.depth.push_back(static_cast<std::int32_t>(depth));
        columns.visible.push_back(walk.State().isVisible ? 1 : 0);
        if (withTransforms)
            columns.transform.insert(columns.transform.end(), walk.Place().begin(), walk.Place().end());
    }
}

py::dict TableOfOccurrences(ModelPointer const& model, bool visibleOnly, bool withTransforms, unsigned long long most)
{
    Columns columns;
    {
        py::gil_scoped_release const released;
        Fill(columns, model->scene, visibleOnly ? OccurrenceWalk::Mode::kVisible : OccurrenceWalk::Mode::kAll,
             withTransforms, most);
    }
    py::list names;
    for (std::string_view const name : columns.names)
        names.append(Text(name));
    auto const rows = static_cast<py::ssize_t>(columns.parent.size());
    py::dict table;
    table["names"] = names;
    table["parent"] = ArrayOfColumn(std::move(columns.parent), {rows});
    table["name"] = ArrayOfColumn(std::move(columns.name), {rows});
    table["component"] = ArrayOfColumn(std::move(columns.component), {rows});
    table["placement"] = ArrayOfColumn(std::move(columns.placement), {rows});
    table["depth"] = ArrayOfColumn(std::move(columns.depth), {rows});
    table["visible"] = ArrayOfColumn(std::move(columns.visible), {rows}).attr("view")("bool");
    if (withTransforms)
        table["transform"] = ArrayOfColumn(std::move(columns.transform), {rows, 4, 4});
    return table;
}

py::array RowsOf(ModelPointer const& model, std::string const& expression)
{
    std::vector<std::size_t> const found = Query(expression).Find(model->scene);
    return ArrayOfColumn(std::vector<std::int64_t>(found.begin(), found.end()),
                         {static_cast<py::ssize_t>(found.size())});
}

// That of the first geometry that has one, or else what holds for all of it.
SceneStyle const* StyleOf(Occurrence const& occurrence)
{
    OccurrenceState const& state = occurrence.state;
    for (SceneGeometry const& geometry : occurrence.component->geometry)
    {
        if (SceneStyle const* const style = state.StyleOf(geometry))
            return style;
    }
    return state.imposedStyle ? state.imposedStyle : state.inheritedStyle;
}

}  // namespace

void BindOccurrences(py::module_& module)
{
    py::class_<Occurrences>(module, "Occurrences", KVR_DOC(OccurrenceWalk, OccurrenceWalk))
        .def(py::init<ModelPointer, bool, std::optional<std::size_t>>(), py::arg("model"),
             py::arg("visible_only") = false, py::arg("levels") = py::none())
        .def("__iter__", [](py::object self) { return self; })
        .def("__next__", &Occurrences::Next);
    module.def("occurrence_table", &TableOfOccurrences, py::arg("model"), py::arg("visible_only") = false,
               py::arg("transforms") = true, py::arg("most") = kMostRows);
    module.def("query_rows", &RowsOf, py::arg("model"), py::arg("expression"), KVR_DOC(Query, Find));
    py::class_<Occurrence, std::shared_ptr<Occurrence>>(module, "Occurrence", KVR_DOC(OccurrenceState, OccurrenceState))
        .def_property_readonly(
            "path",
            [](Occurrence const& occurrence)
            {
                py::tuple path(occurrence.path.size());
                for (std::size_t i = 0; i < occurrence.path.size(); ++i)
                    path[i] = Text(occurrence.path[i]);
                return path;
            },
            KVR_DOC(OccurrenceWalk, Path))
        .def_property_readonly(
            "name",
            [](Occurrence const& occurrence) { return Text(NameOf(*occurrence.component, occurrence.placement)); },
            "The label of the instance that places it or, without one, of the component.")
        .def_property_readonly(
            "depth", [](Occurrence const& occurrence) { return occurrence.path.size(); },
            KVR_DOC(OccurrenceWalk, Depth))
        .def_property_readonly(
            "component",
            [](Occurrence const& occurrence) {
                return ComponentPiece{occurrence.model, occurrence.component};
            },
            KVR_DOC(OccurrenceWalk, Component))
        .def_property_readonly(
            "placement",
            [](Occurrence const& occurrence) -> py::object
            {
                if (!occurrence.placement)
                    return py::none();
                return py::cast(PlacementPiece{occurrence.model, occurrence.placement});
            },
            "What places it; None for the root.")
        .def_property_readonly(
            "visible", [](Occurrence const& occurrence) { return occurrence.state.isVisible; },
            KVR_DOC(OccurrenceState, isVisible))
        .def_property_readonly(
            "transform", [](Occurrence const& occurrence) { return ArrayOf(occurrence.place); },
            KVR_DOC(OccurrenceWalk, Place))
        .def_property_readonly(
            "step", [](Occurrence const& occurrence) { return ArrayOf(occurrence.step); },
            KVR_DOC(OccurrenceWalk, Step))
        .def_property_readonly(
            "style", [](Occurrence const& occurrence) { return StyleOrNone(occurrence.model, StyleOf(occurrence)); },
            "The style of its first geometry that has one or, without, what holds for all below it; None for none.")
        .def_property_readonly(
            "geometry",
            [](std::shared_ptr<Occurrence> const& occurrence)
            { return GeometryOf(occurrence->model, *occurrence->component, occurrence); },
            "The geometry of the component as it stands here.")
        .def_property_readonly(
            "mesh", [](Occurrence const& occurrence) { return MeshOf(occurrence.model, *occurrence.component); },
            "The triangles of the first mesh of the component or, without one, of its first body; None without either.")
        .def_property_readonly(
            "body", [](Occurrence const& occurrence) { return BodyOf(occurrence.model, *occurrence.component); },
            "The first body of the component; None without one.")
        .def_property_readonly(
            "properties", [](Occurrence const& occurrence) { return PropertiesOf(occurrence.component->properties); },
            KVR_DOC(SceneComponent, properties));
}

}  // namespace KVR::Python
