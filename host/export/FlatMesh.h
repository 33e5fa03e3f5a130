#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "host/export/Export.h"
#include "host/export/TriangleGroups.h"

namespace KVR
{

/// An occurrence's triangles of one style, with the transform that brings them to the scene's coordinates and unit.
struct FlatGroup
{
    TriangleGroups::Group const& triangles;
    Matrix const& transform;
    /// Whether triangles have to be turned over, since the transform mirrors.
    bool isMirrored;
    /// Null for none.
    ModelStyle const* style;
    std::string name;
};

/// Hands out the triangles of all visible occurrences of a scene, for formats without structure. Counts what has none.
void ForEachTriangleGroup(ExportTask& task, std::function<void(FlatGroup const&)> const& use);

/// A vertex of a group in the scene's coordinates.
std::array<float, 3> VertexOf(FlatGroup const& group, std::uint32_t index);

}  // namespace KVR
