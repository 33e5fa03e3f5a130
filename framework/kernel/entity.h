#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "framework/kernel/Export.h"

class TopoDS_Shape;

namespace KVR
{

class HISTORY_STREAM;

/// What an entity is; the numbers stand in stores.
enum ENTITY_KIND : std::uint32_t
{
    kEntity_Body = 0,
    kEntity_Face = 1,
    kEntity_Edge = 2,
    kEntity_Vertex = 3
};

/// A thing of the kernel: a view of a shape, with data ids. An entity made while a history stream is active belongs to
/// that stream, and any other to the caller; whoever deletes one takes it out of its stream.
class KVR_KERNEL_API ENTITY
{
public:
    virtual ~ENTITY();
    ENTITY(ENTITY const&) = delete;
    ENTITY& operator=(ENTITY const&) = delete;

    /// What the entity is.
    ENTITY_KIND Kind() const noexcept { return m_kind; }
    /// The shape of Open CASCADE behind the entity, with its place and orientation; never null, and good for reading as
    /// long as the entity lives. Include <TopoDS_Shape.hxx> to use it.
    TopoDS_Shape const& Shape() const noexcept { return *m_shape; }
    /// The data ids in the order in which they were given.
    std::vector<std::string> const& DataIds() const noexcept { return m_dataIds; }
    /// Gives the entity a further data id, an equal one too.
    void AddDataId(std::string dataId) { m_dataIds.push_back(std::move(dataId)); }
    /// The stream that frees the entity; null when the caller or a body does.
    HISTORY_STREAM* Stream() const noexcept { return m_stream; }

protected:
    ENTITY(ENTITY_KIND kind, TopoDS_Shape const& shape);

private:
    friend class HISTORY_STREAM;

    ENTITY_KIND m_kind;
    std::unique_ptr<TopoDS_Shape> m_shape;
    std::vector<std::string> m_dataIds;
    HISTORY_STREAM* m_stream = nullptr;
    /// The place in the stream's list.
    std::size_t m_place = 0;
};

/// A face of a shape.
class KVR_KERNEL_API FACE final : public ENTITY
{
public:
    explicit FACE(TopoDS_Shape const& shape);
    ~FACE() override;
};

/// An edge of a shape.
class KVR_KERNEL_API EDGE final : public ENTITY
{
public:
    explicit EDGE(TopoDS_Shape const& shape);
    ~EDGE() override;
};

/// A vertex of a shape.
class KVR_KERNEL_API VERTEX final : public ENTITY
{
public:
    explicit VERTEX(TopoDS_Shape const& shape);
    ~VERTEX() override;
};

/// A boundary representation of any kind: solids, sheets, wires and what is put together of them.
class KVR_KERNEL_API BODY final : public ENTITY
{
public:
    explicit BODY(TopoDS_Shape const& shape);
    ~BODY() override;

    using Faces = std::vector<std::unique_ptr<FACE>>;
    using Edges = std::vector<std::unique_ptr<EDGE>>;

    /// The faces, each once, in the order of a walk over the shape, which is the same for the same shape. They are
    /// owned by the body, made when they are first asked for, and stay until it ends.
    Faces const& FaceList() const;
    /// The edges, in the same way.
    Edges const& EdgeList() const;

    /// Gives a face, by its place in FaceList, another data id. One without such a place has no effect.
    void AddFaceDataId(std::uint32_t place, std::string dataId);
    /// Gives an edge, by its place in EdgeList, another data id. One without such a place has no effect.
    void AddEdgeDataId(std::uint32_t place, std::string dataId);

    /// A data id of a face or edge, with its place in FaceList or EdgeList.
    struct SubId
    {
        std::uint32_t place;
        std::string dataId;
    };
    /// The data ids of faces in the order in which they were given; owned by the body.
    std::vector<SubId> const& FaceDataIds() const noexcept { return m_faceIds; }
    /// The data ids of edges in the order in which they were given; owned by the body.
    std::vector<SubId> const& EdgeDataIds() const noexcept { return m_edgeIds; }

private:
    mutable std::unique_ptr<Faces> m_faces;
    mutable std::unique_ptr<Edges> m_edges;
    std::vector<SubId> m_faceIds;
    std::vector<SubId> m_edgeIds;
};

namespace GMK
{

/// A typed view of an entity: null when the entity is null or of another kind.
struct BODY_xs
{
    explicit BODY_xs(ENTITY* entity) noexcept : body(dynamic_cast<BODY*>(entity)) {}
    BODY* body;
};

/// The same for an edge.
struct EDGE_xs
{
    explicit EDGE_xs(ENTITY* entity) noexcept : edge(dynamic_cast<EDGE*>(entity)) {}
    EDGE* edge;
};

}  // namespace GMK

}  // namespace KVR
