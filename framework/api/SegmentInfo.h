#pragma once

#include <utility>

#include "framework/api/Export.h"
#include "framework/api/IndexSets.h"

namespace KVR
{

/// The part of a mesh that stands for one edge of the model: a run of vertices.
class KVR_API EdgeSegmentInfo
{
public:
    EdgeSegmentInfo();
    EdgeSegmentInfo(EdgeSegmentInfo const&) = default;
    EdgeSegmentInfo(EdgeSegmentInfo&&) noexcept = default;
    EdgeSegmentInfo& operator=(EdgeSegmentInfo const&) = default;
    EdgeSegmentInfo& operator=(EdgeSegmentInfo&&) noexcept = default;
    virtual ~EdgeSegmentInfo();

    /// Sets the run of vertices.
    void SetVertexIndexSet(VertexIndexSet vertices) noexcept { m_vertices = std::move(vertices); }
    /// The vertices of the mesh along the edge, in order; owned by the segment.
    VertexIndexSet const& VertexIndices() const noexcept { return m_vertices; }

private:
    VertexIndexSet m_vertices;
};

/// The part of a mesh that stands for one face of the model: some of its polygons. Visible until set otherwise.
class KVR_API FaceSegmentInfo
{
public:
    FaceSegmentInfo();
    FaceSegmentInfo(FaceSegmentInfo const&) = default;
    FaceSegmentInfo(FaceSegmentInfo&&) noexcept = default;
    FaceSegmentInfo& operator=(FaceSegmentInfo const&) = default;
    FaceSegmentInfo& operator=(FaceSegmentInfo&&) noexcept = default;
    virtual ~FaceSegmentInfo();

    /// Shows or hides the segment.
    void SetVisible(bool visible) noexcept { m_visible = visible; }
    /// Whether the segment is shown.
    bool IsVisible() const noexcept { return m_visible; }
    /// Sets the polygons.
    void SetPolygonIndexSet(PolygonIndexSet polygons) noexcept { m_polygons = std::move(polygons); }
    /// The polygons of the mesh that make the face; owned by the segment.
    PolygonIndexSet const& PolygonIndices() const noexcept { return m_polygons; }

private:
    PolygonIndexSet m_polygons;
    bool m_visible = true;
};

}  // namespace KVR
