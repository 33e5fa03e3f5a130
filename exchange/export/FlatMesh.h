#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "exchange/export/ExportTask.h"
#include "scene/CurvePoints.h"
#include "scene/SceneMesh.h"

namespace KVR
{

/// An occurrence of a component, for which formats without structure have no more than a name.
struct FlatOccurrence
{
    /// Counted from 1 in the order of the walk.
    std::size_t number = 0;
    std::string name;
};

/// An occurrence's triangles of one style, with the transform that brings them to the scene's coordinates and the unit
/// of the file.
struct FlatGroup
{
    SceneMesh const& mesh;
    SceneMesh::Run const& run;
    Matrix const& transform;
    /// Whether triangles have to be turned over, since the transform mirrors.
    bool isMirrored;
    /// Null for none.
    SceneStyle const* style;
    FlatOccurrence const& occurrence;
};

/// An occurrence's curves, or the edges of a body without faces; a point is a line of one.
struct FlatLines
{
    SceneLines const& lines;
    Matrix const& transform;
    /// Null for none.
    SceneStyle const* style;
    FlatOccurrence const& occurrence;
};

/// The unit of a file in a format that states none: that which was asked for, else the scene's. It is remarked when it
/// was asked for.
UnitTypeEnum FlatUnit(ExportTask& task);
/// How it is called in the file: "millimeter".
std::string FlatUnitName(UnitTypeEnum unit);

/// Hands out the triangles of all visible occurrences of a scene, for formats without structure, and the lines, for
/// those that have a place for them. Counts what has neither. Throws std::runtime_error for more than 10,000,000
/// occurrences.
void ForEachTriangleGroup(ExportTask& task, std::function<void(FlatGroup const&)> const& use,
                          std::function<void(FlatLines const&)> const& useLines = {});
/// The same for a format in which one thing of all triangles stands in front of another: hands them out to the first,
/// and then all of them once more to the second.
void ForEachTriangleGroupTwice(ExportTask& task, std::function<void(FlatGroup const&)> const& first,
                               std::function<void(FlatGroup const&)> const& second);

/// A point of three numbers after a transform.
std::array<float, 3> PlacedPoint(Matrix const& transform, double const* point);
/// The vertices of a group, by their places in the run, in the scene's coordinates; the list is replaced.
void PlaceVertices(FlatGroup const& group, std::vector<std::array<float, 3>>& vertices);
/// The normal of a vertex, likewise.
std::array<float, 3> NormalOf(FlatGroup const& group, std::uint32_t index);

}  // namespace KVR
