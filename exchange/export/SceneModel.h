#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "framework/api/Enums.h"

namespace KVR
{

class IBrep;
class ICurve;
class IFile;
class IObject;
class IPoint;
class IPolygonMesh;
class IProducer;
class UTF8String;

/// A transform, row by row, for points as columns.
using Matrix = std::array<double, 16>;

constexpr Matrix kIdentity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

Matrix Product(Matrix const& left, Matrix const& right);

/// A style as far as formats of exchange have a place for it. Colours are fractions of sRGB.
struct ModelStyle
{
    std::string id;
    std::string label;
    std::optional<std::array<double, 3>> diffuse;
    std::optional<std::array<double, 3>> emission;
    /// 1 is opaque.
    double opacity = 1.0;
    /// As glTF has them, where the style states them.
    std::optional<double> metallic;
    std::optional<double> roughness;
};

/// What kinds of geometry are told apart. Those of the last kind are in no format.
enum class GeometryKind
{
    kBody,
    kMesh,
    kCurve,
    kPoint,
    kOther
};

/// A piece of geometry of a component. One pointer is set, by its kind; objects belong to the producer.
struct ModelGeometry
{
    GeometryKind kind = GeometryKind::kOther;
    IObject* object = nullptr;
    IBrep* body = nullptr;
    IPolygonMesh* mesh = nullptr;
    ICurve* curve = nullptr;
    IPoint* point = nullptr;
    std::string id;
    std::string label;
    /// The interface's name.
    std::string className;
    Matrix transform = kIdentity;
    bool isVisible = true;
    /// The first of its styles; empty for none.
    std::string style;
    /// Of a mesh, the id of the body in the same component that it is the mesh of; empty for none.
    std::string bodyId;
    /// Of a body, whether a mesh of the same component is its.
    bool hasMesh = false;
};

/// A component where another has it. In a file it stands by itself, without an instance.
struct ModelPlacement
{
    /// Of the instance; empty in a file.
    std::string id;
    std::string label;
    IObject* object = nullptr;
    std::size_t target = 0;
    Matrix transform = kIdentity;
    bool isVisible = true;
    std::string style;
};

/// What an assembly says of occurrences below it. Paths are ids of instances, from the assembly down; the last id may
/// be that of geometry.
struct ModelOverride
{
    std::optional<bool> isVisible;
    std::optional<std::string> style;
    std::optional<Matrix> transform;
    std::unordered_map<std::string, std::unique_ptr<ModelOverride>> below;
};

struct ModelProperty
{
    std::string name;
    /// A JSON value: a text in quotes, a number, true or false.
    std::string json;
};

struct ModelComponent
{
    enum class Kind
    {
        kFile,
        kAssembly,
        kPart
    };
    Kind kind = Kind::kPart;
    IObject* object = nullptr;
    std::string id;
    std::string label;
    /// The length of its unit of length; that of the scene where it states none.
    double metresPerUnit = 1e-3;
    std::string style;
    std::vector<ModelPlacement> placements;
    std::vector<ModelGeometry> geometry;
    /// Shared by the copies that a filter makes.
    std::shared_ptr<ModelOverride> overrides;
    std::vector<ModelProperty> properties;
};

struct ModelLayer
{
    std::string id;
    std::string label;
    std::string description;
    int number = 0;
    bool isVisible = true;
    std::vector<std::string> items;
};

/// What of a scene is wanted, by ids, labels of objects, or layers (by id, label or number).
struct SceneFilter
{
    /// Empty for everything: else what is named, with all above and below it.
    std::vector<std::string> only;
    /// What is named, with all below it, is left out.
    std::vector<std::string> hide;
};

/// A scene as its producer serves it, read once: components and what they are made of, for all formats. What stands in
/// a cycle, or below 1,000 components, is left out.
class SceneModel
{
public:
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

    /// The scene from its root file, or other root, on. What is read belongs to the producer, which must outlive it.
    SceneModel(IProducer& producer, UTF8String const& rootId, SceneFilter const& filter);
    ~SceneModel();

    std::vector<ModelComponent> components;
    std::size_t root = kNone;
    /// Of the components that the walk met first; millimetres when none states one.
    UnitTypeEnum unit = kUnitType_Millimeter;
    double metresPerUnit = 1e-3;
    std::unordered_map<std::string, ModelStyle> styles;
    std::vector<ModelLayer> layers;
    std::vector<std::string> cameraIds;
    std::vector<std::string> viewIds;
    std::array<double, 3> upVector{0.0, 0.0, 1.0};
    /// Placements whose targets are missing or would close a cycle.
    std::size_t missingTargets = 0;

    /// The style of an id; null for none.
    ModelStyle const* StyleOf(std::string const& id) const;

private:
    friend class SceneModelReader;

    IProducer& m_producer;
};

}  // namespace KVR
