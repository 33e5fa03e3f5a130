#include "mesh/XMLPolygonMesh.h"

#include <utility>

#include "framework/api/ObjectCollector.h"
#include "framework/api/Subscript.h"
#include "framework/xml_util/EnumTexts.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLUtils.h"
#include "producer/ElementReaders.h"
#include "producer/SideFileIndex.h"
#include "producer/XMLProducerImpl.h"
#include "readers/ChangeKeyReader.h"
#include "readers/ExtensionDataReader.h"
#include "readers/HeldProperties.h"
#include "readers/Ignored.h"
#include "readers/ReferenceReader.h"
#include "readers/RegisterObject.h"
#include "readers/UnitReader.h"

namespace KVR
{

namespace
{

// The indices of a segment in a set of their own; false, with the set left alone, for a bad index.
template <class Set, class Add>
bool IndicesAt(MeshSegmentList const& segments, unsigned long index, Set& set, Add add)
{
    if (index >= segments.All().size())
        return false;
    MeshSegment const& segment = segments.All()[index];
    set.Reserve(segment.count);
    for (std::size_t i = 0; i < segment.count; ++i)
        add(set, segment.At(i));
    return true;
}

}  // namespace

XMLPolygonMesh::XMLPolygonMesh(UTF8String id, XMLProducerImpl* producer)
    : TransformState(std::move(id), UTF16String()), m_producer(producer)
{
}

XMLPolygonMesh::~XMLPolygonMesh() = default;

void XMLPolygonMesh::AppendProperty(IProperty const* property)
{
    AddPropertyId(property, m_propertyIds);
    AddPropertyToDatabase(property, m_producer);
}

PolygonVertex XMLPolygonMesh::VertexAt(unsigned long index) const
{
    return CheckedAt(m_content.vertices, index);
}
Normal XMLPolygonMesh::NormalAt(unsigned long index) const
{
    return CheckedAt(m_content.normals, index);
}

ITextureVertexSet* XMLPolygonMesh::TextureVertexSetAt(unsigned long index) const
{
    if (!m_content.textureVertexSets)
        ThrowInvalidSubscript();
    return CheckedAt(*m_content.textureVertexSets, index).get();
}

IsValueSpecifiedEnum XMLPolygonMesh::PolygonAt(unsigned long index, EditablePolygon const*& polygon) const
{
    if (index >= PolygonCount())
        ThrowInvalidSubscript();
    polygon = m_content.polygons.At(index);
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLPolygonMesh::LODId(UTF8String& id) const
{
    id = m_levelOfDetailId ? *m_levelOfDetailId : UTF8String();
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLPolygonMesh::FaceSegmentAt(unsigned long index, FaceSegmentInfo& segment) const
{
    PolygonIndexSet polygons;
    auto const add = [](PolygonIndexSet& set, std::int32_t polygon) { set.Add(static_cast<std::uint32_t>(polygon)); };
    if (!IndicesAt(m_content.faceSegments, index, polygons, add))
        return kIsValueSpecified_No;
    segment.SetPolygonIndexSet(std::move(polygons));
    segment.SetVisible(m_content.faceSegments.All()[index].isVisible);
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLPolygonMesh::EdgeSegmentInfoAt(unsigned long index, EdgeSegmentInfo& segment) const
{
    VertexIndexSet vertices;
    auto const add = [](VertexIndexSet& set, std::int32_t vertex) { set.Append(vertex); };
    if (!IndicesAt(m_content.edgeSegments, index, vertices, add))
        return kIsValueSpecified_No;
    segment.SetVertexIndexSet(std::move(vertices));
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLPolygonMesh::PolygonSetGroups(IdSetSet&) const
{
    return kIsValueSpecified_No;
}

IsValueSpecifiedEnum XMLPolygonMesh::PolygonMaterialIndexAt(unsigned long index, unsigned int& material) const
{
    if (index >= PolygonCount())
        ThrowInvalidSubscript();
    std::uint32_t const slot = m_content.polygons.MaterialSlotAt(index);
    if (slot >= m_content.materials.size())
        return kIsValueSpecified_No;
    material = slot;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLPolygonMesh::PolygonMaterials(IdSetSet& materials) const
{
    if (m_content.materials.empty())
        return kIsValueSpecified_No;
    IdSetSet sets;
    for (std::uint32_t const material : m_content.materials)
    {
        IdSet ids;
        ids.AddWithoutUniquenessCheck((*m_content.materialIds)[material]);
        sets.AddWithUniquenessCheck(std::move(ids));
    }
    materials = std::move(sets);
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLPolygonMesh::IsSingleSided(bool&) const
{
    return kIsValueSpecified_No;
}

IsValueSpecifiedEnum XMLPolygonMesh::LengthUnit(UnitTypeEnum& unit) const
{
    unit = m_lengthUnit;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLPolygonMesh::DisplayLengthUnit(UnitTypeEnum& unit) const
{
    unit = m_displayLengthUnit;
    return kIsValueSpecified_Yes;
}

// "Orientation" and "IsSingleSided" are attributes of the format that no answer depends on.
void XMLPolygonMesh::ReadAttributes(xercesc::DOMNode const* node)
{
    XMLUtils::GetNodeAttribute(node, Names::Label, m_label);
    if (UTF8String id; XMLUtils::GetNodeAttribute(node, Names::LODID, id))
        m_levelOfDetailId = id.IsEmpty() ? nullptr : std::make_unique<UTF8String const>(std::move(id));
    Ignored(ValueOfDocumentText(kPolygonMeshTypeTexts, AttributeText(node, Names::Type), m_meshType));
    XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, m_versionPersistentId);
    // Kept: absence means hidden here, although a new mesh is shown.
    m_visible = false;
    XMLUtils::GetNodeAttribute(node, Names::Visibility, m_visible);
}

void XMLPolygonMesh::ReadFromXML(xercesc::DOMNode* node, UTF8String const& id)
{
    m_id = id;
    ReadAttributes(node);
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child, On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, m_changeKey)); }),
              On(Names::Unit, [&] { Ignored(ReadLengthUnits(child, m_lengthUnit, m_displayLengthUnit)); }),
              // Kept: a "Tolerance" has no effect on a mesh.
              On(Names::Transform, [&] { SetMeshTransform(TransformOf(child)); }),
              On(Names::ExtensionData, [&] { AddExtensionData(child, *this); }),
              On(Names::Styles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_styles)); }));
    }
}

bool ReadPolygonMesh(XMLProducerImpl* producer, xercesc::DOMNode* node, MeshStore& meshStore, UTF8String& id)
{
    XMLUtils::GetNodeAttribute(node, Names::ID, id);
    StoreEntry<XMLPolygonMesh>& entry = meshStore[id];
    if (!entry.object && producer->sideFileIndex->hasUnreadMeshes && !id.IsEmpty())
    {
        entry.owned = std::make_unique<XMLPolygonMesh>(id, producer);
        entry.object = entry.owned.get();
    }
    if (!entry.object)
    {
        TellObserver(&ReadObserver::ElementDropped, node, DropReason::kNoRecord);
        return false;
    }
    producer->ApplyIdMapping(id);
    if (IsTaken(*producer, node, id))
        return true;
    if (!entry.owned)
        return false;
    entry.owned->ReadFromXML(node, id);
    Register(*producer, node, std::move(entry.owned));
    return true;
}

}  // namespace KVR
