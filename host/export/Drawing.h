#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/export/Export.h"
#include "host/export/OccurrenceState.h"
#include "host/export/SceneModel.h"

namespace KVR
{

/// A piece of geometry as an occurrence shows it.
struct DrawnGeometry
{
    /// Its place in its component.
    std::size_t place = 0;
    /// Of all of it; empty for none.
    std::string style;
    /// Whether faces have their own styles all the same.
    bool keepsFaceStyles = true;
};

/// Tells what of a component an occurrence shows. A body that a mesh stands for is shown by the mesh, which follows
/// what assemblies above say of the body. What has no place in formats of triangles is counted, once for a component.
class Drawing
{
public:
    explicit Drawing(ExportTask& task) : m_task(task) {}

    /// Valid until the next call.
    std::vector<DrawnGeometry> const& Of(ModelComponent const& component, OccurrenceState const& state);

    /// Pieces of geometry that were left out of occurrences for being hidden.
    unsigned long long Hidden() const noexcept { return m_hidden; }

private:
    static constexpr std::size_t kNoBody = static_cast<std::size_t>(-1);

    std::vector<std::size_t> const& BodiesOf(ModelComponent const& component);

    ExportTask& m_task;
    /// Of the geometry of each component that was met, the body that it is the mesh of.
    std::unordered_map<ModelComponent const*, std::vector<std::size_t>> m_bodies;
    std::vector<DrawnGeometry> m_drawn;
    unsigned long long m_hidden = 0;
};

}  // namespace KVR
