#include "scene/geometry/TriangleRuns.h"

#include <algorithm>
#include <cmath>

namespace KVR
{

namespace
{

// Behind what is there, or as it is where there is no room for more than it.
template <class Value>
void MoveBehind(std::vector<Value>& target, std::vector<Value>&& list)
{
    if (target.capacity() == 0)
        target = std::move(list);
    else
        target.insert(target.end(), list.begin(), list.end());
    std::vector<Value>().swap(list);
}

}  // namespace

void CornerIndex::Grow()
{
    m_slots.assign(std::max<std::size_t>(64, m_slots.size() * 2), TriangleCorner::kNone);
    for (std::size_t i = 0; i < m_entries.size(); ++i)
    {
        std::size_t slot = SlotOf(m_entries[i].corner);
        while (m_slots[slot] != TriangleCorner::kNone)
            slot = (slot + 1) & (m_slots.size() - 1);
        m_slots[slot] = static_cast<std::uint32_t>(i);
    }
}

TriangleRuns::TriangleRuns(std::size_t vertexCount, bool hasFaces) : m_hasFaces(hasFaces)
{
    ReserveLarge(m_seen, vertexCount);
    m_seen.resize(vertexCount);
}

std::size_t TriangleRuns::RunOf(std::string_view style, bool hasNormals, bool hasTexture)
{
    std::string key(style);
    key += hasNormals ? "\n1" : "\n0";
    key += hasTexture ? '1' : '0';
    auto const [entry, isNew] = m_places.try_emplace(std::move(key), m_runs.size());
    if (isNew)
    {
        SceneMesh::Run& run = m_runs.emplace_back().run;
        run.style = style;
        run.hasNormals = hasNormals;
        run.hasTexture = hasTexture;
    }
    return entry->second;
}

void TriangleRuns::Reserve(std::size_t run, std::size_t vertices, std::size_t triangles)
{
    Content& content = m_runs[run];
    ReserveLarge(content.positions, 3 * vertices);
    ReserveLarge(content.normals, content.run.hasNormals ? 3 * vertices : 0);
    ReserveLarge(content.texture, content.run.hasTexture ? 2 * vertices : 0);
    ReserveLarge(content.indices, 3 * triangles);
    ReserveLarge(content.faces, m_hasFaces ? triangles : 0);
}

void TriangleRuns::AddNormal(Content& target, std::array<double, 3> const& normal)
{
    double const length = std::hypot(normal[0], normal[1], normal[2]);
    bool const isGood = length > 0.0 && std::isfinite(length);
    if (isGood)
        AppendThree<float>(target.normals,
                           {static_cast<float>(normal[0] / length), static_cast<float>(normal[1] / length),
                            static_cast<float>(normal[2] / length)});
    else
        AppendThree<float>(target.normals, {0.0F, 0.0F, 1.0F});
}

void TriangleRuns::Append(SceneMesh& mesh, Content&& content, bool hasNormals, bool hasTexture) const
{
    SceneMesh::Run& run = content.run;
    run.firstVertex = mesh.VertexCount();
    run.firstTriangle = mesh.TriangleCount();
    run.triangleCount = content.indices.size() / 3;
    for (std::uint32_t& index : content.indices)
        index += static_cast<std::uint32_t>(run.firstVertex);
    if (hasNormals)
        content.normals.resize(3 * run.vertexCount);
    if (hasTexture)
        content.texture.resize(2 * run.vertexCount);
    MoveBehind(mesh.positions, std::move(content.positions));
    MoveBehind(mesh.normals, std::move(content.normals));
    MoveBehind(mesh.texture, std::move(content.texture));
    MoveBehind(mesh.indices, std::move(content.indices));
    if (m_hasFaces)
        MoveBehind(mesh.faceOfTriangle, std::move(content.faces));
    mesh.runs.push_back(std::move(run));
}

void TriangleRuns::MoveInto(SceneMesh& mesh)
{
    std::vector<Seen>().swap(m_seen);
    bool const hasNormals = std::any_of(m_runs.begin(), m_runs.end(), [](auto const& c) { return c.run.hasNormals; });
    bool const hasTexture = std::any_of(m_runs.begin(), m_runs.end(), [](auto const& c) { return c.run.hasTexture; });
    std::size_t vertices = 0;
    std::size_t triangles = 0;
    for (Content const& content : m_runs)
    {
        vertices += content.run.vertexCount;
        triangles += content.indices.size() / 3;
    }
    if (m_runs.size() > 1)
    {
        ReserveLarge(mesh.positions, 3 * vertices);
        ReserveLarge(mesh.normals, hasNormals ? 3 * vertices : 0);
        ReserveLarge(mesh.texture, hasTexture ? 2 * vertices : 0);
        ReserveLarge(mesh.indices, 3 * triangles);
        ReserveLarge(mesh.faceOfTriangle, m_hasFaces ? triangles : 0);
        mesh.runs.reserve(m_runs.size());
    }
    for (Content& content : m_runs)
    {
        content.numbers = CornerIndex();
        Append(mesh, std::move(content), hasNormals, hasTexture);
    }
    m_runs.clear();
    m_places.clear();
}

}  // namespace KVR
