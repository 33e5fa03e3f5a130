#pragma once

#include <cstddef>
#include <ctime>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "framework/api/Enums.h"
#include "scene/Export.h"
#include "scene/Transform.h"

// What a scene is made of. Texts are UTF-8; views of texts, and pointers to styles and overrides, are valid while the
// scene lives. Objects belong to the producer.
namespace KVR
{

class FileProperties;
class IBrep;
class ICurve;
class IObject;
class IPoint;
class IPointCloud;
class IPolygonMesh;
struct SceneStyle;

/// In place of an index, for none.
constexpr std::size_t kNoIndex = std::numeric_limits<std::size_t>::max();

/// What kinds of geometry are told apart. The last one has sketches, work features and annotation callouts.
enum class GeometryKind
{
    kBody,
    kMesh,
    kCurve,
    kPoint,
    kCloud,
    kOther
};

/// A piece of geometry of a component. What stands in sets of geometry counts as the component's own.
struct SceneGeometry
{
    GeometryKind kind = GeometryKind::kOther;
    bool isVisible = true;
    /// Of a body, whether a mesh of the same component is its.
    bool hasMesh = false;
    IObject* object = nullptr;
    // The object by its kind; the others are null.
    IBrep* body = nullptr;
    IPolygonMesh* mesh = nullptr;
    ICurve* curve = nullptr;
    IPoint* point = nullptr;
    IPointCloud* cloud = nullptr;
    std::string_view id;
    std::string_view label;
    /// The interface's name.
    std::string_view className;
    /// From the geometry to its component, sets between them included, in the geometry's unit.
    Matrix transform = kIdentity;
    /// The unit of its numbers; that of the component where it states none.
    double metresPerUnit = 1e-3;
    /// The first of its styles; null for none.
    SceneStyle const* style = nullptr;
    /// Of a mesh, the id of the body in the same component that it is the mesh of; empty for none.
    std::string_view bodyId;
};

/// Why a placement is not entered.
enum class SceneCut : unsigned char
{
    kNone,
    /// There is no file, assembly or part behind the target's id.
    kMissingTarget,
    /// It would place something within itself.
    kCycle,
    /// It would reach deeper than the filter's mostLevels.
    kTooDeep,
    /// The filter leaves it out.
    kFiltered
};

/// A component where another has it: placed by an instance or, in a file, standing by itself.
struct ScenePlacement
{
    /// Of the instance; empty without one.
    std::string_view id;
    std::string_view label;
    /// The instance; null without one.
    IObject* object = nullptr;
    /// The component placed, also where the placement is cut; kNoIndex when it is missing.
    std::size_t target = kNoIndex;
    /// The first of the instance's styles; null for none.
    SceneStyle const* style = nullptr;
    bool isVisible = true;
    SceneCut cut = SceneCut::kNone;
    /// From the component placed to the one that places it, in the unit of the latter. It stands last: what goes
    /// through the structure alone is as long as a line of the cache.
    Matrix transform = kIdentity;

    /// Whether it is not cut, so that what it places occurs below its component.
    bool IsEntered() const noexcept { return cut == SceneCut::kNone; }
};

/// One entry in the list of a component's children.
struct SceneChild
{
    /// Null when there is no object behind the id.
    IObject* object = nullptr;
    /// Empty for a child of which the producer knows not even the id.
    std::string_view id;
    /// Among the component's placements; kNoIndex for what is no placement.
    std::size_t placement = kNoIndex;
};

/// What an assembly says of occurrences below it. Paths are ids of instances, from the assembly down; the last id may
/// be that of geometry, and the id of what an instance places may follow the instance's.
struct SceneOverride
{
    std::optional<bool> isVisible;
    /// Null for a style with an empty id, which takes the occurrence's own away.
    std::optional<SceneStyle const*> style;
    std::optional<Matrix> transform;
    /// By the next id. They belong to the scene.
    std::unordered_map<std::string_view, SceneOverride*> below;
};

/// A custom property.
struct SceneProperty
{
    std::string name;
    /// Nothing for a value of no known type. A time is as the file states it, without a zone.
    std::variant<std::monostate, std::string, int, double, bool, std::tm> value;
};

/// A property's number; nothing for one of another type, or that is not finite.
KVR_SCENE_API std::optional<double> NumberOf(SceneProperty const& property);

/// A file, an assembly or a part, once for all its occurrences.
struct SceneComponent
{
    enum class Kind
    {
        kFile,
        kAssembly,
        kPart
    };
    Kind kind = Kind::kPart;
    IObject* object = nullptr;
    std::string_view id;
    std::string_view label;
    /// The unit of length that it states; kUnitType_Unknown for none.
    UnitTypeEnum unit = kUnitType_Unknown;
    /// The length of its unit; that of the scene where it states none.
    double metresPerUnit = 1e-3;
    /// The first of its styles; null for none.
    SceneStyle const* style = nullptr;
    /// All that it lists, in the producer's order, repeats and missing ones included.
    std::vector<SceneChild> children;
    /// In the order of the children, each once.
    std::vector<ScenePlacement> placements;
    /// In the order of the children, each once.
    std::vector<SceneGeometry> geometry;
    /// Null for none. Paths in it start with the ids of this component's placements or geometry.
    SceneOverride const* overrides = nullptr;
    /// What the design file says about itself; null for nothing.
    KVR::FileProperties const* fileProperties = nullptr;
    /// The custom properties among it; empty for files.
    std::vector<SceneProperty> properties;
};

}  // namespace KVR
