#include <pybind11/operators.h>
#include <pybind11/stl.h>

#include <functional>

#include "describe/ReferenceWalk.h"
#include "framework/api/IAnnotationCallout.h"
#include "framework/api/IView.h"
#include "inspect/query/FilteredScene.h"
#include "python/SceneModel.h"
#include "python/Units.h"
#include "scene/SceneNote.h"
#include "scene/SceneView.h"

namespace KVR::Python
{

namespace
{

using LayerPiece = Piece<SceneLayer>;

/// What kvr.Scene stands on.
class SceneHandle
{
public:
    SceneHandle(py::object producer, std::vector<std::string> only, std::vector<std::string> hide, std::string view,
                Deflection const& deflection, double angle, bool isOwn)
    {
        auto const source = producer.cast<ProducerHandle const&>().source;
        if (!source)
            throw py::value_error("the producer is closed");
        SceneFilter filter;
        filter.only = std::move(only);
        filter.hide = std::move(hide);
        filter.view = std::move(view);
        std::optional<Scene> scene;
        {
            // Others may ask a producer that is not the scene's own meanwhile, which only one thread at a time may.
            std::optional<py::gil_scoped_release> released;
            if (isOwn)
                released.emplace();
            scene.emplace(FilteredScene(source->Producer(), source->RootId(), filter));
        }
        m_model = ModelPointer(new SceneModel{std::move(producer), source, std::move(*scene),
                                              SceneMeshes(MeshQuality{deflection, angle})});
    }

    ModelPointer const& Model() const
    {
        if (!m_model)
            throw py::value_error("the scene is closed");
        return m_model;
    }
    Scene const& Get() const { return Model()->scene; }
    void Close() noexcept { m_model.reset(); }
    bool IsClosed() const noexcept { return !m_model; }

private:
    ModelPointer m_model;
};

// None for a time that no calendar has.
py::object TimeOf(std::tm const& time)
{
    try
    {
        return py::module_::import("datetime")
            .attr("datetime")(time.tm_year + 1900, time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min,
                              time.tm_sec);
    }
    catch (py::error_already_set const& error)
    {
        if (!error.matches(PyExc_ValueError))
            throw;
        return py::none();
    }
}

py::tuple Ids(IdSet const& ids)
{
    py::tuple result(ids.Size());
    for (unsigned long long i = 0; i < ids.Size(); ++i)
        result[i] = Text(ids.At(i).View());
    return result;
}

py::tuple Texts(std::vector<std::string_view> const& texts)
{
    py::tuple result(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        result[i] = Text(texts[i]);
    return result;
}

template <class T, class List>
py::tuple PiecesOf(ModelPointer const& model, List const& list)
{
    py::tuple result(list.size());
    for (std::size_t i = 0; i < list.size(); ++i)
        result[i] = Piece<T>{model, &list[i]};
    return result;
}

py::list ViewsOf(SceneHandle const& scene)
{
    py::list views;
    for (SceneReference const& reference : scene.Get().Views())
    {
        if (auto const* const view = dynamic_cast<IView const*>(reference.object))
            views.append(SceneView::Of(*view));
    }
    return views;
}

py::list NotesOf(SceneHandle const& scene)
{
    SceneSource const& source = *scene.Model()->source;
    py::list notes;
    ReferenceWalk walk(source.Producer());
    walk.Reach(source.RootId());
    while (walk.Next())
    {
        if (auto const* const callout = dynamic_cast<IAnnotationCallout const*>(walk.Object()))
            notes.append(SceneNote::Of(source.Producer(), *callout));
    }
    return notes;
}

py::list CutsOf(SceneHandle const& scene)
{
    constexpr char const* kReasons[] = {"", "missing target", "cycle", "too deep", "filtered"};
    py::list cuts;
    for (Scene::Cut const& cut : scene.Get().Cuts())
    {
        SceneComponent const& component = scene.Get().Components()[cut.component];
        py::object const placement =
            cut.placement == kNoIndex ? py::object(py::none())
                                      : py::cast(PlacementPiece{scene.Model(), &component.placements[cut.placement]});
        cuts.append(py::make_tuple(ComponentPiece{scene.Model(), &component}, placement,
                                   kReasons[static_cast<std::size_t>(cut.reason)]));
    }
    return cuts;
}

char const* KindOf(SceneComponent const& component)
{
    switch (component.kind)
    {
        case SceneComponent::Kind::kFile:
            return "file";
        case SceneComponent::Kind::kAssembly:
            return "assembly";
        case SceneComponent::Kind::kPart:
            return "part";
    }
    return "";
}

// Objects that belong to a scene: the same when they are one.
template <class T>
py::class_<Piece<T>> BindPiece(py::module_& module, char const* name, char const* comment)
{
    return py::class_<Piece<T>>(module, name, comment)
        .def(py::self == py::self)
        .def("__hash__", [](Piece<T> const& piece) { return std::hash<T const*>()(piece.object); })
        .def_property_readonly("id", [](Piece<T> const& piece) { return Text(piece->id); })
        .def_property_readonly("label", [](Piece<T> const& piece) { return Text(piece->label); });
}

void BindStyle(py::module_& module)
{
    BindPiece<SceneStyle>(module, "Style", KVR_DOC(SceneStyle, SceneStyle))
        .def_property_readonly("diffuse", [](StylePiece const& style) { return style->diffuse; })
        .def_property_readonly("emission", [](StylePiece const& style) { return style->emission; })
        .def_property_readonly(
            "opacity", [](StylePiece const& style) { return style->opacity; }, KVR_DOC(SceneStyle, opacity))
        .def_property_readonly(
            "metallic", [](StylePiece const& style) { return style->metallic; }, KVR_DOC(SceneStyle, metallic))
        .def_property_readonly("roughness", [](StylePiece const& style) { return style->roughness; });
}

void BindLayer(py::module_& module)
{
    BindPiece<SceneLayer>(module, "Layer", KVR_DOC(SceneLayer, SceneLayer))
        .def_property_readonly("description", [](LayerPiece const& layer) { return Text(layer->description); })
        .def_property_readonly("number", [](LayerPiece const& layer) { return layer->number; })
        .def_property_readonly("visible", [](LayerPiece const& layer) { return layer->isVisible; })
        .def_property_readonly(
            "style", [](LayerPiece const& layer) { return StyleOrNone(layer.model, layer->style); },
            KVR_DOC(SceneLayer, style))
        .def_property_readonly("items", [](LayerPiece const& layer) { return Texts(layer->items); });
}

void BindPlacement(py::module_& module)
{
    BindPiece<ScenePlacement>(module, "Placement", KVR_DOC(ScenePlacement, ScenePlacement))
        .def_property_readonly(
            "component",
            [](PlacementPiece const& placement) -> py::object
            {
                if (placement->target == kNoIndex)
                    return py::none();
                return py::cast(
                    ComponentPiece{placement.model, &placement.model->scene.Components()[placement->target]});
            },
            "The component placed; None when it is missing.")
        .def_property_readonly(
            "transform", [](PlacementPiece const& placement) { return ArrayOf(placement->transform); },
            KVR_DOC(ScenePlacement, transform))
        .def_property_readonly(
            "style", [](PlacementPiece const& placement) { return StyleOrNone(placement.model, placement->style); },
            KVR_DOC(ScenePlacement, style))
        .def_property_readonly("visible", [](PlacementPiece const& placement) { return placement->isVisible; })
        .def_property_readonly(
            "entered", [](PlacementPiece const& placement) { return placement->IsEntered(); },
            KVR_DOC(ScenePlacement, IsEntered));
}

void BindComponent(py::module_& module)
{
    BindPiece<SceneComponent>(module, "Component", KVR_DOC(SceneComponent, SceneComponent))
        .def_property_readonly(
            "kind", [](ComponentPiece const& component) { return KindOf(*component.object); },
            "'file', 'assembly' or 'part'.")
        .def_property_readonly(
            "unit", [](ComponentPiece const& component) { return NameOfUnit(component->unit); },
            "The name of the unit of length that it states; empty for none.")
        .def_property_readonly(
            "metres_per_unit", [](ComponentPiece const& component) { return component->metresPerUnit; },
            KVR_DOC(SceneComponent, metresPerUnit))
        .def_property_readonly(
            "style", [](ComponentPiece const& component) { return StyleOrNone(component.model, component->style); },
            KVR_DOC(SceneComponent, style))
        .def_property_readonly(
            "placements",
            [](ComponentPiece const& component)
            { return PiecesOf<ScenePlacement>(component.model, component->placements); },
            KVR_DOC(SceneComponent, placements))
        .def_property_readonly(
            "geometry",
            [](ComponentPiece const& component) { return GeometryOf(component.model, *component.object, nullptr); },
            KVR_DOC(SceneComponent, geometry))
        .def_property_readonly(
            "mesh", [](ComponentPiece const& component) { return MeshOf(component.model, *component.object); },
            "The triangles of its first mesh or, without one, of its first body; None without either.")
        .def_property_readonly(
            "body", [](ComponentPiece const& component) { return BodyOf(component.model, *component.object); },
            "Its first body; None without one.")
        .def_property_readonly(
            "properties", [](ComponentPiece const& component) { return PropertiesOf(component->properties); },
            KVR_DOC(SceneComponent, properties));
}

void BindView(py::module_& module)
{
    py::class_<SceneView>(module, "View", KVR_DOC(SceneView, SceneView))
        .def_property_readonly("id", [](SceneView const& view) { return Text(view.id.View()); })
        .def_property_readonly("label", [](SceneView const& view) { return Text(UTF8String(view.label).View()); })
        .def_readonly("visible", &SceneView::isVisible)
        .def_readonly("active", &SceneView::isActive)
        .def_readonly("members", &SceneView::members)
        .def_readonly("hidden_members", &SceneView::hiddenMembers)
        .def_property_readonly(
            "cameras", [](SceneView const& view) { return Ids(view.cameras); }, KVR_DOC(SceneView, cameras));
}

void BindNote(py::module_& module)
{
    py::class_<SceneNote>(module, "Note", KVR_DOC(SceneNote, SceneNote))
        .def_property_readonly("id", [](SceneNote const& note) { return Text(note.id.View()); })
        .def_property_readonly("label", [](SceneNote const& note) { return Text(UTF8String(note.label).View()); })
        .def_readonly("visible", &SceneNote::isVisible)
        .def_property_readonly(
            "text",
            [](SceneNote const& note)
            {
                std::string text;
                for (SceneNote::Line const& line : note.text.value_or(std::vector<SceneNote::Line>()))
                    text += (text.empty() ? "" : "\n") + SceneNote::Joined(line);
                return Text(text);
            },
            "Its lines; empty when it has none.")
        .def_property_readonly(
            "kind", [](SceneNote const& note) { return Text(note.kind); }, KVR_DOC(SceneNote, KindOf))
        .def_property_readonly(
            "references",
            [](SceneNote const& note) {
                return Texts({note.references.begin(), note.references.end()});
            },
            KVR_DOC(SceneNote, ReferencesOf))
        .def_property_readonly(
            "details", [](SceneNote const& note) { return Text(note.details); }, KVR_DOC(SceneNote, DetailsOf));
}

}  // namespace

py::object StyleOrNone(ModelPointer const& model, SceneStyle const* style)
{
    return style ? py::cast(StylePiece{model, style}) : py::object(py::none());
}

py::array_t<double> ArrayOf(Matrix const& matrix)
{
    return py::array_t<double>({4, 4}, matrix.data());
}

py::dict PropertiesOf(std::vector<SceneProperty> const& properties)
{
    py::dict values;
    for (SceneProperty const& property : properties)
    {
        py::object value = py::none();
        if (auto const* const text = std::get_if<std::string>(&property.value))
            value = Text(*text);
        else if (auto const* const integer = std::get_if<int>(&property.value))
            value = py::int_(*integer);
        else if (auto const* const number = std::get_if<double>(&property.value))
            value = py::float_(*number);
        else if (auto const* const flag = std::get_if<bool>(&property.value))
            value = py::bool_(*flag);
        else if (auto const* const time = std::get_if<std::tm>(&property.value))
            value = TimeOf(*time);
        values[Text(property.name)] = value;
    }
    return values;
}

void BindScene(py::module_& module)
{
    BindStyle(module);
    BindLayer(module);
    BindPlacement(module);
    BindComponent(module);
    BindView(module);
    BindNote(module);
    py::class_<SceneHandle>(module, "Scene", KVR_DOC(Scene, Scene))
        .def(py::init(
                 [](py::object producer, std::vector<std::string> only, std::vector<std::string> hide, std::string view,
                    double deflection, double angle, bool isOwn)
                 {
                     return std::make_unique<SceneHandle>(std::move(producer), std::move(only), std::move(hide),
                                                          std::move(view), Deflection{deflection, true}, angle, isOwn);
                 }),
             py::arg("producer"), py::arg("only") = std::vector<std::string>(),
             py::arg("hide") = std::vector<std::string>(), py::arg("view") = "", py::arg("deflection") = 1e-3,
             py::arg("angle") = 0.5, py::arg("is_own") = false)
        .def("close", &SceneHandle::Close,
             "Lets go of the scene; what was taken out of it keeps it, and the producer, alive.")
        .def_property_readonly("closed", &SceneHandle::IsClosed)
        .def_property_readonly("producer", [](SceneHandle const& scene) { return scene.Model()->producer; })
        .def_property_readonly(
            "components",
            [](SceneHandle const& scene) { return PiecesOf<SceneComponent>(scene.Model(), scene.Get().Components()); },
            KVR_DOC(Scene, Components))
        .def_property_readonly(
            "root",
            [](SceneHandle const& scene) -> py::object
            {
                if (scene.Get().Root() == kNoIndex)
                    return py::none();
                return py::cast(ComponentPiece{scene.Model(), &scene.Get().Components()[scene.Get().Root()]});
            },
            "The component at the top; None when there is none.")
        .def_property_readonly(
            "styles",
            [](SceneHandle const& scene) { return PiecesOf<SceneStyle>(scene.Model(), scene.Get().Styles()); },
            KVR_DOC(Scene, Styles))
        .def_property_readonly(
            "layers",
            [](SceneHandle const& scene) { return PiecesOf<SceneLayer>(scene.Model(), scene.Get().Layers()); },
            KVR_DOC(Scene, Layers))
        .def_property_readonly("views", &ViewsOf, KVR_DOC(Scene, Views))
        .def_property_readonly("notes", &NotesOf, "The annotation callouts that are reached from the root.")
        .def_property_readonly("cuts", &CutsOf, KVR_DOC(Scene, Cuts))
        .def_property_readonly(
            "unit", [](SceneHandle const& scene) { return NameOfUnit(scene.Get().Unit()); }, KVR_DOC(Scene, Unit))
        .def_property_readonly(
            "metres_per_unit", [](SceneHandle const& scene) { return scene.Get().MetresPerUnit(); },
            KVR_DOC(Scene, MetresPerUnit))
        .def_property_readonly("_model", [](SceneHandle const& scene) { return scene.Model(); });
    py::class_<SceneModel, ModelPointer>(module, "Model");
}

}  // namespace KVR::Python
