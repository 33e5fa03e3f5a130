#pragma once

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
    EdgeSegmentInfo& operator=(EdgeSegmentInfo const&) = default;
    virtual ~EdgeSegmentInfo();

    void SetVertexIndexSet(VertexIndexSet const& vertices) { m_vertices = vertices; }
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
    FaceSegmentInfo& operator=(FaceSegmentInfo const&) = default;
    virtual ~FaceSegmentInfo();

    void SetVisible(bool visible) noexcept { m_visible = visible; }
    bool IsVisible() const noexcept { return m_visible; }
    void SetPolygonIndexSet(PolygonIndexSet const& polygons) { m_polygons = polygons; }
    PolygonIndexSet const& PolygonIndices() const noexcept { return m_polygons; }

private:
    PolygonIndexSet m_polygons;
    bool m_visible = true;
};

}  // namespace KVR
