#pragma once

#include <string_view>
#include <unordered_set>

namespace KVR
{

class IObject;
class IProducer;
class IdSet;
class StyleReader;
struct SceneComponent;
struct SceneContent;

/// Reads into a scene what components declare and say about themselves: shared objects and custom properties.
class AttributeReader
{
public:
    AttributeReader(SceneContent& content, IProducer& producer, StyleReader& styles)
        : m_content(content), m_producer(producer), m_styles(styles)
    {
    }

    void ReadSets(IObject const& object);
    void ReadProperties(SceneComponent& component);
    void ReadUniverse();

private:
    void ReadLayers(IdSet const& ids);
    void ReadGroups(IdSet const& ids);
    void ReadLods(IdSet const& ids);

    /// Each object once for the scene.
    template <class Use>
    void ForEachNew(IdSet const& ids, Use const& use);

    SceneContent& m_content;
    IProducer& m_producer;
    StyleReader& m_styles;
    std::unordered_set<std::string_view> m_known;
};

}  // namespace KVR
