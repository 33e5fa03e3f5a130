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
    virtual unsigned long VertexCount() const = 0;
    /// A bad index throws.
    virtual PolygonVertex VertexAt(unsigned long index) const = 0;
    virtual unsigned long NormalCount() const = 0;
    /// A bad index throws.
    virtual Normal NormalAt(unsigned long index) const = 0;
    virtual unsigned long TextureVertexSetCount() const = 0;
    /// The set, owned by the mesh. A bad index throws.
    virtual ITextureVertexSet* TextureVertexSetAt(unsigned long index) const = 0;
    virtual unsigned long PolygonCount() const = 0;
    /// The polygon, owned by the mesh. A bad index throws.
    virtual IsValueSpecifiedEnum PolygonAt(unsigned long index, EditablePolygon const*& polygon) const = 0;
    virtual PolygonMeshTypeEnum MeshType() const = 0;
    virtual PolygonMeshOrientationEnum MeshOrientation() const = 0;
    /// The id of the mesh's level of detail.
    virtual IsValueSpecifiedEnum LODId(UTF8String& id) const = 0;
    /// The segments of the mesh as the face segments give them.
    virtual unsigned long MeshSegmentCount() const;
    /// Not specified for a bad index, here and in the segment operations below.
    virtual IsValueSpecifiedEnum MeshSegmentAt(unsigned long index, PolygonIndexSet& polygons) const;
    virtual IsValueSpecifiedEnum MeshSegmentVisibilityAt(unsigned long index, bool& visible) const;
    virtual unsigned long FaceSegmentCount() const = 0;
    virtual IsValueSpecifiedEnum FaceSegmentAt(unsigned long index, FaceSegmentInfo& segment) const = 0;
    virtual unsigned long EdgeSegmentCount() const = 0;
    virtual IsValueSpecifiedEnum EdgeSegmentInfoAt(unsigned long index, EdgeSegmentInfo& segment) const = 0;
    virtual IsValueSpecifiedEnum EdgeSegmentAt(unsigned long index, VertexIndexSet& vertices) const;
    virtual IsValueSpecifiedEnum PolygonSetGroups(IdSetSet& groups) const = 0;
    /// The place in PolygonMaterials of a polygon's material. A bad index throws.
    virtual IsValueSpecifiedEnum PolygonMaterialIndexAt(unsigned long index, unsigned int& material) const = 0;
    /// One set of one style id per material in use.
    virtual IsValueSpecifiedEnum PolygonMaterials(IdSetSet& materials) const = 0;
    virtual IsValueSpecifiedEnum IsSingleSided(bool& singleSided) const = 0;
    /// Keeps a copy, and nothing for the identity.
    virtual void SetMeshTransform(Matrix3d const& transform) = 0;
    virtual unsigned long PolygonSetGroupCount() const = 0;
};

}  // namespace KVR
