#include "authoring/KernelStoreWriter.h"

#include <TopoDS_Shape.hxx>
#include <string>

#include "framework/api/Exception.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/entity_list.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/restore.h"

namespace KVR::Authoring
{

struct KernelStoreWriter::Content
{
    std::vector<std::unique_ptr<ENTITY>> entities;

    // The entities are ours, whatever stream is active.
    template <class Entity>
    Entity& Add(UTF8String const& dataId, TopoDS_Shape const& shape)
    {
        ActiveStreamScope const none(nullptr);
        auto entity = std::make_unique<Entity>(shape);
        Entity& added = *entity;
        if (!dataId.IsEmpty())
            added.AddDataId(std::string(dataId.View()));
        entities.push_back(std::move(entity));
        return added;
    }
};

KernelStoreWriter::KernelStoreWriter(UTF16String const& path, KernelStoreForm form)
    : m_file(path), m_form(form), m_content(std::make_unique<Content>())
{
}

KernelStoreWriter::~KernelStoreWriter() = default;

void KernelStoreWriter::Body(UTF8String const& dataId, TopoDS_Shape const& shape, std::vector<SubEntityId> const& faces,
                             std::vector<SubEntityId> const& edges)
{
    if (shape.IsNull())
        throw GeneralException("a body needs a shape");
    BODY& body = m_content->Add<BODY>(dataId, shape);
    for (SubEntityId const& face : faces)
        body.AddFaceDataId(face.place, std::string(face.dataId.View()));
    for (SubEntityId const& edge : edges)
        body.AddEdgeDataId(edge.place, std::string(edge.dataId.View()));
}

void KernelStoreWriter::Edge(UTF8String const& dataId, TopoDS_Shape const& edge)
{
    if (edge.IsNull() || edge.ShapeType() != TopAbs_EDGE)
        throw GeneralException("an edge needs an edge's shape");
    m_content->Add<EDGE>(dataId, edge);
}

void KernelStoreWriter::Finish()
{
    ENTITY_LIST entities(false);
    for (auto const& entity : m_content->entities)
        entities.add(entity.get());
    outcome const result = GKI_SAVE(m_file.File(), m_form == KernelStoreForm::kText).execute_save(entities);
    if (result.error_number() == outcome::kBadFile)
        m_file.Fail();
    if (!result.ok())
        throw GeneralException(UTF8String(result.message()));
    m_file.Commit();
}

}  // namespace KVR::Authoring
