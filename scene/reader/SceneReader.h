#pragma once

#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "framework/api/UTF8String.h"
#include "scene/SceneComponent.h"
#include "scene/reader/AttributeReader.h"
#include "scene/reader/GeometryReader.h"
#include "scene/reader/StyleReader.h"

namespace KVR
{

class IAssembly;
class IInstance;
class ObjectKind;

/// Fills a scene from its producer.
class SceneReader
{
public:
    SceneReader(SceneContent& content, IProducer& producer);

    void Read(UTF8String const& rootId);

private:
    std::size_t ComponentOf(UTF8String const& id);
    std::size_t AddComponent(UTF8String const& id, IObject& object, ObjectKind const& kind);
    void ReadComponent(std::size_t index);
    template <class Owner>
    void ListChildren(Owner const& owner);
    /// Fills m_firsts.
    void FindRepeats();
    void ReadChildren(std::size_t index);
    void ReadChild(std::size_t index, SceneChild& child);
    void ReadInstance(std::size_t index, IInstance& instance, SceneChild& child);
    void ReadOverrides(SceneComponent& component, IAssembly const& assembly);
    SceneOverride& OverrideAt(SceneOverride*& top, IdSet const& path);

    SceneContent& m_content;
    IProducer& m_producer;
    StyleReader m_styles;
    AttributeReader m_attributes;
    GeometryReader m_geometryReader;
    std::unordered_map<std::string_view, std::size_t> m_components;
    bool m_hasUnit = false;

    // Of the component being read; kept, so that their memory is taken once.
    std::vector<UTF8String> m_childIds;
    std::vector<SceneChild> m_children;
    std::vector<ScenePlacement> m_placements;
    std::vector<SceneGeometry> m_geometry;
    std::vector<std::pair<IObject const*, std::size_t>> m_sorted;
    /// Which child each child repeats; itself for none. Empty when nothing repeats.
    std::vector<std::size_t> m_firsts;
};

}  // namespace KVR
