#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "scene/SceneMesh.h"

namespace KVR
{

/// A corner of a triangle: places in the source's lists, kNone for a list that it does not use.
struct TriangleCorner
{
    static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

    std::uint32_t vertex = kNone;
    std::uint32_t normal = kNone;
    std::uint32_t texture = kNone;

    bool operator==(TriangleCorner const&) const = default;
};

/// Numbers corners in the order in which they come, equal ones alike.
class CornerIndex
{
public:
    /// The number, and whether it is new.
    std::pair<std::uint32_t, bool> Add(TriangleCorner const& corner)
    {
        if ((m_corners.size() + 1) * 2 > m_slots.size())
            Grow();
        std::size_t slot = SlotOf(corner);
        for (; m_slots[slot] != TriangleCorner::kNone; slot = (slot + 1) & (m_slots.size() - 1))
            if (m_corners[m_slots[slot]] == corner)
                return {m_slots[slot], false};
        m_slots[slot] = static_cast<std::uint32_t>(m_corners.size());
        m_corners.push_back(corner);
        return {m_slots[slot], true};
    }

    TriangleCorner const& At(std::uint32_t number) const { return m_corners[number]; }

private:
    void Grow();
    std::size_t SlotOf(TriangleCorner const& corner) const noexcept
    {
        std::uint64_t hash = corner.vertex * 0x9E3779B97F4A7C15U;
        hash = (hash ^ (hash >> 29U) ^ corner.normal) * 0xBF58476D1CE4E5B9U;
        hash = (hash ^ (hash >> 32U) ^ corner.texture) * 0x94D049BB133111EBU;
        return (hash ^ (hash >> 31U)) & (m_slots.size() - 1);
    }

    std::vector<TriangleCorner> m_corners;
    std::vector<std::uint32_t> m_slots;
};

/// Sorts triangles into the runs of a mesh.
class TriangleRuns
{
public:
    /// For a source of so many vertices.
    explicit TriangleRuns(std::size_t vertexCount) : m_seen(vertexCount) {}

    /// The place of the run of a style; made when there is none.
    std::size_t RunOf(std::string_view style, bool hasNormals, bool hasTexture);

    /// Adds a triangle to a run. The source tells of places in its lists: VertexAt and NormalAt three numbers,
    /// TextureAt two.
    template <class Source>
    void Add(std::size_t run, std::array<TriangleCorner, 3> const& corners, std::uint32_t face, Source const& source)
    {
        Content& target = m_runs[run];
        for (TriangleCorner const& corner : corners)
        {
            // The triangles around a vertex are neighbours as a rule, and have the same corner there.
            Seen& seen = m_seen[corner.vertex];
            if (seen.run == run && target.numbers.At(seen.number) == corner)
            {
                target.indices.push_back(seen.number);
                continue;
            }
            auto const [number, isNew] = target.numbers.Add(corner);
            seen = {static_cast<std::uint32_t>(run), number};
            target.indices.push_back(number);
            if (!isNew)
                continue;
            std::array<double, 3> const point = source.VertexAt(corner.vertex);
            target.positions.insert(target.positions.end(), point.begin(), point.end());
            if (target.run.hasNormals)
                AddNormal(target, source.NormalAt(corner.normal));
            if (target.run.hasTexture)
                for (double const x : source.TextureAt(corner.texture))
                    target.texture.push_back(static_cast<float>(x));
        }
        target.faces.push_back(face);
    }

    /// Puts the runs one behind the other into a mesh; with `hasFaces` also the face of each triangle.
    void MoveInto(SceneMesh& mesh, bool hasFaces);

private:
    struct Content
    {
        SceneMesh::Run run;
        CornerIndex numbers;
        std::vector<double> positions;
        std::vector<float> normals;
        std::vector<float> texture;
        std::vector<std::uint32_t> indices;
        std::vector<std::uint32_t> faces;
    };

    /// The corner of a vertex that was added last.
    struct Seen
    {
        std::uint32_t run = TriangleCorner::kNone;
        std::uint32_t number = 0;
    };

    static void AddNormal(Content& target, std::array<double, 3> const& normal);
    static void Append(SceneMesh& mesh, Content&& content, bool hasNormals, bool hasTexture, bool hasFaces);

    std::vector<Seen> m_seen;
    std::vector<Content> m_runs;
    std::unordered_map<std::string, std::size_t> m_places;
};

}  // namespace KVR
