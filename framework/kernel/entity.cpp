#include "framework/kernel/entity.h"

#include <TopAbs_ShapeEnum.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Shape.hxx>
#include <utility>

#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"

namespace KVR
{

namespace
{

template <class Sub>
void AddIds(std::vector<std::unique_ptr<Sub>> const& subs, std::vector<BODY::SubId> const& ids)
{
    for (BODY::SubId const& id : ids)
    {
        if (id.place < subs.size())
            subs[id.place]->AddDataId(id.dataId);
    }
}

// Faces and edges are the body's, whatever stream is active.
template <class Sub>
std::unique_ptr<std::vector<std::unique_ptr<Sub>>> SubsOf(TopoDS_Shape const& shape, TopAbs_ShapeEnum kind,
                                                          std::vector<BODY::SubId> const& ids)
{
    ActiveStreamScope const none(nullptr);
    TopTools_IndexedMapOfShape shapes;
    TopExp::MapShapes(shape, kind, shapes);
    auto subs = std::make_unique<std::vector<std::unique_ptr<Sub>>>();
    subs->reserve(static_cast<std::size_t>(shapes.Extent()));
    for (int i = 1; i <= shapes.Extent(); ++i)
        subs->push_back(std::make_unique<Sub>(shapes.FindKey(i)));
    AddIds(*subs, ids);
    return subs;
}

template <class Sub>
void AddSubId(std::unique_ptr<std::vector<std::unique_ptr<Sub>>> const& subs, std::vector<BODY::SubId>& ids,
              std::uint32_t place, std::string dataId)
{
    if (subs && place < subs->size())
        (*subs)[place]->AddDataId(dataId);
    ids.push_back({place, std::move(dataId)});
}

}  // namespace

ENTITY::ENTITY(ENTITY_KIND kind, TopoDS_Shape const& shape)
    : m_kind(kind), m_shape(std::make_unique<TopoDS_Shape>(shape))
{
    if (HISTORY_STREAM* const stream = gki_global_data().activeStream)
        stream->Add(this);
}

ENTITY::~ENTITY()
{
    if (m_stream)
        m_stream->Remove(this);
}

FACE::FACE(TopoDS_Shape const& shape) : ENTITY(kEntity_Face, shape) {}
FACE::~FACE() = default;
EDGE::EDGE(TopoDS_Shape const& shape) : ENTITY(kEntity_Edge, shape) {}
EDGE::~EDGE() = default;
VERTEX::VERTEX(TopoDS_Shape const& shape) : ENTITY(kEntity_Vertex, shape) {}
VERTEX::~VERTEX() = default;
BODY::BODY(TopoDS_Shape const& shape) : ENTITY(kEntity_Body, shape) {}
BODY::~BODY() = default;

BODY::Faces const& BODY::FaceList() const
{
    if (!m_faces)
        m_faces = SubsOf<FACE>(Shape(), TopAbs_FACE, m_faceIds);
    return *m_faces;
}

BODY::Edges const& BODY::EdgeList() const
{
    if (!m_edges)
        m_edges = SubsOf<EDGE>(Shape(), TopAbs_EDGE, m_edgeIds);
    return *m_edges;
}

void BODY::AddFaceDataId(std::uint32_t place, std::string dataId)
{
    AddSubId(m_faces, m_faceIds, place, std::move(dataId));
}

void BODY::AddEdgeDataId(std::uint32_t place, std::string dataId)
{
    AddSubId(m_edges, m_edgeIds, place, std::move(dataId));
}

}  // namespace KVR
