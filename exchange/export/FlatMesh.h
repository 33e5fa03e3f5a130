#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

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

/// A point of three numbers after a transform.
std::array<float, 3> PlacedPoint(Matrix const& transform, double const* point);
/// A vertex of a group, by its place in the run, and its normal, in the scene's coordinates.
std::array<float, 3> VertexOf(FlatGroup const& group, std::uint32_t index);
std::array<float, 3> NormalOf(FlatGroup const& group, std::uint32_t index);

}  // namespace KVR
