#pragma once

#include <memory>
#include <span>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/IPolygonMesh.h"
#include "framework/xml_util/ObjectState.h"
#include "mesh/MaterialSlots.h"
#include "mesh/MeshSegment.h"
#include "mesh/PolygonSlab.h"
#include "mesh/StoreMemory.h"
#include "readers/TransformState.h"

namespace KVR
{

class IProperty;
class XMLProducerImpl;

/// A mesh that a binary store built and an element of the scene dressed.
class XMLPolygonMesh : public TransformState<ObjectState<IPolygonMesh>>, public InStoreMemory
{
public:
    using TextureVertexSets = std::vector<std::unique_ptr<ITextureVertexSet>>;

    /// What a store fills. Lists once read do not change.
    struct Content
    {
        /// The memory of vertices, normals and polygons, shared with other meshes of the store.
        StoreMemory::Blocks memory;
        std::span<PolygonVertex const> vertices;
        std::span<Normal const> normals;
        /// Null without any, as in most meshes.
        std::unique_ptr<TextureVertexSets> textureVertexSets;
        PolygonSlab polygons;
        /// The ids of the store's materials, null without any, and which of them polygons use, in the order of slots.
        std::shared_ptr<StoreMaterials::Table const> materialIds;
        std::span<std::uint32_t const> materials;
        /// The memory of segments, shared likewise.
        StoreMemory::Blocks segmentMemory;
        MeshSegmentList faceSegments;
        MeshSegmentList edgeSegments;
        bool isSegmentVisibilityStored = false;
    };

    XMLPolygonMesh(UTF8String id, XMLProducerImpl* producer);
    ~XMLPolygonMesh() override;

    Content& StoreContent() noexcept { return m_content; }

    /// Fills what the element "IPolygonMesh" says; `id` is the object's own id.
    void ReadFromXML(xercesc::DOMNode* node, UTF8String const& id);

    /// Lists the property's id, again when it is listed already, and hands the property to the universe's database,
    /// which shares it; null has no effect.
    void AppendProperty(IProperty const* property);

    double AngularTolerance() const override { return -1.0; }
    double LinearTolerance() const override { return -1.0; }
    double ParamTolerance() const override { return -1.0; }
    IdSet Styles() const override { return m_styles; }
    unsigned long VertexCount() const override { return m_content.vertices.size(); }
    PolygonVertex VertexAt(unsigned long index) const override;
    unsigned long NormalCount() const override { return m_content.normals.size(); }
    Normal NormalAt(unsigned long index) const override;
    unsigned long TextureVertexSetCount() const override
    {
        return m_content.textureVertexSets ? m_content.textureVertexSets->size() : 0;
    }
    ITextureVertexSet* TextureVertexSetAt(unsigned long index) const override;
    unsigned long PolygonCount() const override { return m_content.polygons.Count(); }
    IsValueSpecifiedEnum PolygonAt(unsigned long index, EditablePolygon const*& polygon) const override;
    PolygonMeshTypeEnum MeshType() const override { return m_meshType; }
    /// Kept: counter-clockwise, whatever the scene says.
    PolygonMeshOrientationEnum MeshOrientation() const override { return kPolygonMeshOrientation_CounterClockWise; }
    /// Specified also when it is empty.
    IsValueSpecifiedEnum LODId(UTF8String& id) const override;
    unsigned long FaceSegmentCount() const override { return m_content.faceSegments.All().size(); }
    IsValueSpecifiedEnum FaceSegmentAt(unsigned long index, FaceSegmentInfo& segment) const override;
    unsigned long EdgeSegmentCount() const override { return m_content.edgeSegments.All().size(); }
    IsValueSpecifiedEnum EdgeSegmentInfoAt(unsigned long index, EdgeSegmentInfo& segment) const override;
    /// Never specified: a scene has no polygon set groups.
    IsValueSpecifiedEnum PolygonSetGroups(IdSetSet& groups) const override;
    IsValueSpecifiedEnum PolygonMaterialIndexAt(unsigned long index, unsigned int& material) const override;
    IsValueSpecifiedEnum PolygonMaterials(IdSetSet& materials) const override;
    /// Kept: never specified, although the scene may say it.
    IsValueSpecifiedEnum IsSingleSided(bool& singleSided) const override;
    void SetMeshTransform(Matrix3d const& transform) override { KeepTransform(transform); }
    unsigned long PolygonSetGroupCount() const override { return 0; }
    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const override;
    IsValueSpecifiedEnum DisplayLengthUnit(UnitTypeEnum& unit) const override;
    bool IsVisible() const override { return m_visible; }

private:
    void ReadAttributes(xercesc::DOMNode const* node);

    XMLProducerImpl* m_producer;
    Content m_content;
    /// Null for the empty one.
    std::unique_ptr<UTF8String const> m_levelOfDetailId;
    PolygonMeshTypeEnum m_meshType = kPolygonMeshType_Regular;
    bool m_visible = true;
    UnitTypeEnum m_lengthUnit = kUnitType_Unknown;
    UnitTypeEnum m_displayLengthUnit = kUnitType_Unknown;
    IdSet m_styles;
};

}  // namespace KVR
