#pragma once

#include <deque>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "exchange/export/SceneModel.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class IAssembly;
class IAttributeSets;
class IInstance;
class IdSet;

/// Fills a scene model from its producer.
class SceneModelReader
{
public:
    SceneModelReader(SceneModel& model, IProducer& producer, SceneFilter const& filter);

    void Read(UTF8String const& rootId);

private:
    std::size_t ComponentOf(UTF8String const& id);
    void ReadComponent(std::size_t index);
    void ReadChildren(std::size_t index, unsigned long long count, std::unordered_set<std::string>& seen);
    void ReadChild(std::size_t index, UTF8String const& id);
    void ReadInstance(std::size_t index, IInstance& instance);
    void ReadGeometry(ModelComponent& component, IObject& object, Matrix const& place, bool isVisible,
                      std::size_t depth);
    void ReadOverrides(ModelComponent& component, IAssembly const& assembly);
    void ReadAttributeSets(IObject const& object);
    void ReadProperties(ModelComponent& component);
    void ReadStyle(std::string const& id);
    std::string FirstStyle(IdSet const& styles);
    void JoinMeshesAndBodies(ModelComponent& component);
    void CutCycles();
    void ApplyFilter();
    void ReadUpVector();

    SceneModel& m_model;
    IProducer& m_producer;
    SceneFilter const& m_filter;
    std::unordered_map<std::string, std::size_t> m_components;
    /// Components that have not been read yet.
    std::deque<std::size_t> m_waiting;
    std::unordered_set<std::string> m_attributeIds;
    bool m_hasUnit = false;
};

}  // namespace KVR
