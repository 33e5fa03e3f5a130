#include "inspect/explain/Occurrences.h"

#include <optional>
#include <string_view>
#include <vector>

#include "framework/api/UTF8String.h"
#include "inspect/explain/LookReasons.h"
#include "scene/OccurrenceWalk.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

// Visits each occurrence of the object: the walk stands at a component, and geometry is that of it, or null.
template <class Use>
void ForEachOccurrence(Scene const& scene, std::string_view id, Use const& use)
{
    std::vector<SceneGeometry const*> geometryOf(scene.Components().size());
    for (std::size_t i = 0; i < geometryOf.size(); ++i)
        for (SceneGeometry const& geometry : scene.Components()[i].geometry)
            if (geometry.id == id)
                geometryOf[i] = &geometry;
    LevelStack levels;
    for (OccurrenceWalk walk(scene); walk.Next();)
    {
        levels.Follow(walk);
        bool const isPlaced = walk.Placement() && walk.Placement()->id == id;
        if (isPlaced || walk.Component().id == id)
            use(walk, levels, nullptr);
        if (SceneGeometry const* const geometry = geometryOf[walk.ComponentIndex()])
            use(walk, levels, geometry);
    }
}

std::string PathOf(OccurrenceWalk const& walk, SceneGeometry const* geometry)
{
    std::string path;
    for (std::string_view const id : walk.Path())
        path += (path.empty() ? "" : "/") + std::string(id);
    if (geometry)
        path += (path.empty() ? "" : "/") + std::string(geometry->id);
    return path;
}

}  // namespace

void FindOccurrences(IProducer& producer, std::string const& rootId, std::string const& path, std::size_t most,
                     Explanation& explanation)
{
    Scene const scene(producer, UTF8String(rootId));
    if (scene.Root() == kNoIndex)
        return;
    ForEachOccurrence(scene, explanation.id,
                      [&](OccurrenceWalk const& walk, LevelStack const& levels, SceneGeometry const* geometry)
                      {
                          bool const isFull = explanation.occurrences.size() >= most;
                          std::string text = isFull && path.empty() ? std::string() : PathOf(walk, geometry);
                          if (!path.empty() && !("/" + text).ends_with("/" + path))
                              return;
                          ++explanation.occurrenceCount;
                          if (isFull)
                              return;
                          explanation.occurrences.push_back(LookOf(walk, levels, geometry));
                          explanation.occurrences.back().path = std::move(text);
                      });
}

}  // namespace KVR
