#pragma once

#include <optional>

namespace KVR
{

struct SceneMesh;

/// What the triangles of a mesh come to, in its own unit.
struct MeshMeasures
{
    double area = 0.0;
    /// What they enclose; nothing unless each of their sides is met by another one from the other side. Points in the
    /// same place count as one.
    std::optional<double> volume;

    static MeshMeasures Of(SceneMesh const& mesh);
};

}  // namespace KVR
