#pragma once

#include "framework/api/Enums.h"
#include "framework/api/Export.h"

namespace KVR
{

/// A vertex of a mesh, in the mesh's length unit.
struct PolygonVertex
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// A normal of a mesh, as its store gives it.
struct Normal
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// One polygon of a mesh: indices into the mesh's vertices, normals and texture vertex sets. An object owns its
/// polygons and frees them through Release.
class KVR_API EditablePolygon
{
public:
    /// Ends the polygon; the pointer is void afterwards.
    virtual void Release() noexcept = 0;
    /// Copies the indices of the vertices, which replace those held; none for null.
    virtual void SetVertexIndices(int count, int const* indices) = 0;
    /// Copies the indices of the normals, one for each vertex, which replace those held; none for null.
    virtual void SetNormalIndices(int count, int const* indices) = 0;
    /// The number of vertices that the polygon was made for.
    virtual int VertexCount() const noexcept = 0;
    /// Copies the list of texture vertex sets that the polygon uses, and for each vertex, in order, one texture vertex
    /// index per set. Both set counts are the same number.
    virtual void SetTextureVertexIndices(int setCount, int setIndexCount, int const* setIndices, int indexCount,
                                         int const* indices) = 0;

    /// A list of the polygon: owned by it, null when it was never set.
    struct IndexList
    {
        int const* data = nullptr;
        int count = 0;
    };
    /// The indices of the vertices.
    virtual IndexList VertexIndices() const noexcept = 0;
    /// The indices of the normals, one for each vertex.
    virtual IndexList NormalIndices() const noexcept = 0;
    /// The texture vertex sets that the polygon uses.
    virtual IndexList TextureSetIndices() const noexcept = 0;
    /// For each vertex, in order, one index into each of those sets.
    virtual IndexList TextureVertexIndices() const noexcept = 0;

    EditablePolygon(EditablePolygon const&) = delete;
    EditablePolygon& operator=(EditablePolygon const&) = delete;

protected:
    EditablePolygon() = default;
    virtual ~EditablePolygon();
};

/// Makes polygons.
class KVR_API PolygonFactory
{
public:
    /// A polygon for so many vertices, owned by the caller, who frees it through Release.
    static EditablePolygon* Create(int vertexCount);
};

}  // namespace KVR
