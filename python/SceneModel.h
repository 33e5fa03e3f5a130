#pragma once

#include <pybind11/numpy.h>

#include <memory>

#include "python/Bindings.h"
#include "python/SceneSource.h"
#include "scene/OccurrenceWalk.h"
#include "scene/SceneMeshes.h"

namespace KVR::Python
{

/// A resolved scene with what it stands on. Everything that Python has of the scene shares it.
struct SceneModel
{
    /// The kvr.Producer, which lives as long as anything of its scene does.
    py::object producer;
    std::shared_ptr<SceneSource> source;
    Scene scene;
    SceneMeshes meshes;
};
using ModelPointer = std::shared_ptr<SceneModel>;

/// Something of a scene that belongs to the scene.
template <class T>
struct Piece
{
    ModelPointer model;
    T const* object;

    T const* operator->() const noexcept { return object; }

    friend bool operator==(Piece const& a, Piece const& b) noexcept { return a.object == b.object; }
};

using ComponentPiece = Piece<SceneComponent>;
using PlacementPiece = Piece<ScenePlacement>;
using StylePiece = Piece<SceneStyle>;

/// One occurrence, as the walk met it.
struct Occurrence
{
    Occurrence(ModelPointer of, OccurrenceWalk const& walk)
        : model(std::move(of)),
          component(&walk.Component()),
          placement(walk.Placement()),
          state(walk.State()),
          step(walk.Step()),
          place(walk.Place()),
          path(walk.Path())
    {
    }

    ModelPointer model;
    SceneComponent const* component;
    /// Null for the root.
    ScenePlacement const* placement;
    OccurrenceState state;
    Matrix step;
    Matrix place;
    std::vector<std::string_view> path;
};
using OccurrencePointer = std::shared_ptr<Occurrence const>;

/// What a person calls the occurrence: the label of what places it, or else of the component.
inline std::string_view NameOf(SceneComponent const& component, ScenePlacement const* placement)
{
    return placement && !placement->label.empty() ? placement->label : component.label;
}

/// Geometry of a component, by itself or where the component occurs.
struct GeometryPiece
{
    ModelPointer model;
    SceneComponent const* component;
    SceneGeometry const* geometry;
    /// Null by itself.
    OccurrencePointer occurrence;
};

/// None for no style.
py::object StyleOrNone(ModelPointer const& model, SceneStyle const* style);
/// Four rows of four.
py::array_t<double> ArrayOf(Matrix const& matrix);
/// The geometry of a component, each with the occurrence, if there is one.
py::tuple GeometryOf(ModelPointer const& model, SceneComponent const& component, OccurrencePointer const& occurrence);
/// The triangles of the first mesh, or else of the first body; None without either.
py::object MeshOf(ModelPointer const& model, SceneComponent const& component);
/// The first body; None without one.
py::object BodyOf(ModelPointer const& model, SceneComponent const& component);
/// A dictionary by name.
py::dict PropertiesOf(std::vector<SceneProperty> const& properties);

}  // namespace KVR::Python
