#pragma once

#include "framework/api/IGeometry.h"
#include "framework/api/IdSetSet.h"
#include "framework/api/IndexSets.h"
#include "framework/api/Polygon.h"
#include "framework/api/SegmentInfo.h"
#include "framework/api/TextureVertexSet.h"

namespace KVR
{

/// A mesh of polygons, in the object's length unit and before its transform. Where an operation says "a bad index
/// throws", it is std::out_of_range with "invalid vector<T> subscript".
class KVR_API IPolygonMesh : public IGeometry
{
public:
    enum PolygonMeshTypeEnum : int
    {
        kPolygonMeshType_Regular = 0,
        kPolygonMeshType_Triangular = 1,
        kPolygonMeshType_Strip = 2,
        kPolygonMeshType_Fan = 3
    };

    enum PolygonMeshOrientationEnum : int
    {
        kPolygonMeshOrientation_CounterClockWise = 0,
        kPolygonMeshOrientation_ClockWise = 1
    };

    ~IPolygonMesh() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The number of vertices; 0 for a mesh without any.
    virtual unsigned long VertexCount() const = 0;
    /// A vertex. A bad index throws.
    virtual PolygonVertex VertexAt(unsigned long index) const = 0;
    /// The number of normals, which polygons refer to by index; 0 for a mesh without any.
    virtual unsigned long NormalCount() const = 0;
    /// A normal as its store has it, neither normalised nor checked. A bad index throws.
    virtual Normal NormalAt(unsigned long index) const = 0;
    /// The number of sets of texture coordinates; 0 for a mesh without any.
    virtual unsigned long TextureVertexSetCount() const = 0;
    /// The set, owned by the mesh. A bad index throws.
    virtual ITextureVertexSet* TextureVertexSetAt(unsigned long index) const = 0;
    /// The number of polygons; those without vertices in the store do not count.
    virtual unsigned long PolygonCount() const = 0;
    /// The polygon, owned by the mesh; always specified. Its indices are those of the store: nobody checks that the
    /// mesh has what they name. A bad index throws.
    virtual IsValueSpecifiedEnum PolygonAt(unsigned long index, EditablePolygon const*& polygon) const = 0;
    /// How the vertices of a polygon make triangles: as one face, a triangle each, a strip or a fan; regular when the
    /// scene does not say, or says something else.
    virtual PolygonMeshTypeEnum MeshType() const = 0;
    /// How vertices run when a face is seen from outside. Kept: counter-clockwise for every mesh, whatever the scene
    /// says.
    virtual PolygonMeshOrientationEnum MeshOrientation() const = 0;
    /// The id of the mesh's level of detail; always specified, and empty when the mesh has none.
    virtual IsValueSpecifiedEnum LODId(UTF8String& id) const = 0;
    /// The number of segments of the mesh: that of its face segments.
    virtual unsigned long MeshSegmentCount() const;
    /// The polygons of a segment, as its face segment has them; not specified for a bad index.
    virtual IsValueSpecifiedEnum MeshSegmentAt(unsigned long index, PolygonIndexSet& polygons) const;
    /// Whether the segment is shown, as its face segment says; not specified for a bad index.
    virtual IsValueSpecifiedEnum MeshSegmentVisibilityAt(unsigned long index, bool& visible) const;
    /// The number of parts that stand for faces of the model; 0 for a mesh without a segment store.
    virtual unsigned long FaceSegmentCount() const = 0;
    /// A copy of the part; not specified for a bad index. Nobody checks that the mesh has the polygons that it names.
    virtual IsValueSpecifiedEnum FaceSegmentAt(unsigned long index, FaceSegmentInfo& segment) const = 0;
    /// The number of parts that stand for edges of the model; 0 for a mesh without a segment store.
    virtual unsigned long EdgeSegmentCount() const = 0;
    /// A copy of the part; not specified for a bad index. Nobody checks that the mesh has the vertices that it names.
    virtual IsValueSpecifiedEnum EdgeSegmentInfoAt(unsigned long index, EdgeSegmentInfo& segment) const = 0;
    /// The vertices of an edge's part; not specified for a bad index.
    virtual IsValueSpecifiedEnum EdgeSegmentAt(unsigned long index, VertexIndexSet& vertices) const;
    /// Groups of polygon sets; not specified for every mesh of a scene.
    virtual IsValueSpecifiedEnum PolygonSetGroups(IdSetSet& groups) const = 0;
    /// The place in PolygonMaterials of a polygon's material; not specified for a polygon without one. A bad index
    /// throws.
    virtual IsValueSpecifiedEnum PolygonMaterialIndexAt(unsigned long index, unsigned int& material) const = 0;
    /// One set of one style id for each material in use, in the order of first use; not specified when no polygon has
    /// one.
    virtual IsValueSpecifiedEnum PolygonMaterials(IdSetSet& materials) const = 0;
    /// Whether polygons are seen from one side alone. Kept: not specified for every mesh, whatever the scene says.
    virtual IsValueSpecifiedEnum IsSingleSided(bool& singleSided) const = 0;
    /// Sets what Transform answers, from then on a copy of the matrix, or null for the identity. Former answers end.
    virtual void SetMeshTransform(Matrix3d const& transform) = 0;
    /// The number of groups of polygon sets: 0 for every mesh of a scene.
    virtual unsigned long PolygonSetGroupCount() const = 0;
};

}  // namespace KVR
