#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "describe/Row.h"
#include "framework/api/UTF8String.h"
#include "inspect/Compare.h"
#include "inspect/Digest.h"
#include "scene/Scene.h"
#include "scene/SceneTotals.h"

namespace KVR
{

class IObject;
class IProducer;

/// An object of a scene that is compared.
struct ComparedObject
{
    UTF8String id;
    IObject* object = nullptr;
    Interface const* interface = nullptr;
    std::string label;
    std::string persistentId;
    /// The object that named it first; kNoIndex for the root.
    std::size_t owner = kNoIndex;
    /// In the other scene; kNoIndex for none.
    std::size_t match = kNoIndex;
    /// Of geometry its shape; of a part, that of all its geometry; zeros for what has none.
    SceneDigest shape;
    /// Of all else that it answers, with ids as they stand.
    SceneDigest rest;
    /// Of a file, assembly or part, its own; of an instance, or of geometry of a component, that which has it. kNoIndex
    /// for what is apart from the tree.
    std::size_t component = kNoIndex;
    /// Of an instance, among the component's placements; of geometry, among its geometry.
    std::size_t place = kNoIndex;
    /// Of an instance the object that it places; kNoIndex for none.
    std::size_t target = kNoIndex;

    bool HasShape() const { return shape != SceneDigest(); }
};

/// One of two scenes that are compared: all objects, each with the one that named it first. Those of the tree, which
/// are reached as children and targets alone, come before all others, so that a layer owns nothing of the tree.
class ComparedScene
{
public:
    /// Asks every object once. Throws what DigestScene throws.
    explicit ComparedScene(IProducer& producer);

    std::vector<ComparedObject>& Objects() noexcept { return m_objects; }
    std::vector<ComparedObject> const& Objects() const noexcept { return m_objects; }
    /// kNoIndex for an id without an object.
    std::size_t Find(std::string_view id) const;
    KVR::Scene const& Model() const noexcept { return m_scene; }
    /// All occurrences of components.
    unsigned long long Occurrences() const noexcept { return m_totals.occurrences; }
    /// How often an object occurs; 0 for what is apart from the tree.
    unsigned long long OccurrencesOf(std::size_t index) const;
    /// Names of what leads to an object with "/" between them.
    std::string PathOf(std::size_t index) const;
    /// Ids of the instances that lead to it.
    std::vector<std::string> PlaceOf(std::size_t index) const;
    /// The label; the id where there is none.
    std::string NameOf(std::size_t index) const;
    /// The objects that an object named first.
    std::vector<std::size_t> ChildrenOf(std::size_t index) const;
    /// What asking takes.
    Telling To(AnswerVisitor& visitor) const;

    /// As SceneComponent etc. have them; null for what is no such thing.
    SceneComponent const* ComponentOf(ComparedObject const& object) const;
    ScenePlacement const* PlacementOf(ComparedObject const& object) const;
    SceneGeometry const* GeometryOf(ComparedObject const& object) const;
    bool IsComponent(ComparedObject const& object) const;

private:
    void Walk(IProducer& producer, UTF8String const& rootId);
    void Digest();
    void PlaceInTree();

    KVR::Scene m_scene;
    SceneTotals m_totals;
    PropertyDatabase const* m_properties = nullptr;
    std::vector<std::string> m_extensionTypeIds;
    std::vector<ComparedObject> m_objects;
    /// The number of those of the tree.
    std::size_t m_treeSize = 0;
    std::unordered_map<UTF8String, std::size_t> m_index;
};

}  // namespace KVR
