#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/api/LargePages.h"
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

/// Finds the numbers of corners.
class CornerIndex
{
public:
    /// The number of the corner: that which it has, else the one given, which it has from here on.
    std::uint32_t Add(TriangleCorner const& corner, std::uint32_t number)
    {
        if ((m_entries.size() + 1) * 2 > m_slots.size())
            Grow();
        std::size_t slot = SlotOf(corner);
        for (; m_slots[slot] != TriangleCorner::kNone; slot = (slot + 1) & (m_slots.size() - 1))
            if (m_entries[m_slots[slot]].corner == corner)
                return m_entries[m_slots[slot]].number;
        m_slots[slot] = static_cast<std::uint32_t>(m_entries.size());
        m_entries.push_back({corner, number});
        return number;
    }

private:
    struct Entry
    {
        TriangleCorner corner;
        std::uint32_t number;
    };

    void Grow();
    std::size_t SlotOf(TriangleCorner const& corner) const noexcept
    {
        std::uint64_t hash = corner.vertex * 0x9E3779B97F4A7C15U;
        hash = (hash ^ (hash >> 29U) ^ corner.normal) * 0xBF58476D1CE4E5B9U;
        hash = (hash ^ (hash >> 32U) ^ corner.texture) * 0x94D049BB133111EBU;
        return (hash ^ (hash >> 31U)) & (m_slots.size() - 1);
    }

    std::vector<Entry> m_entries;
    std::vector<std::uint32_t> m_slots;
};

/// Sorts triangles into the runs of a mesh.
class TriangleRuns
{
public:
    /// For a source of so many vertices; with faces or without.
    TriangleRuns(std::size_t vertexCount, bool hasFaces);

    /// The place of the run of a style; made when there is none.
    std::size_t RunOf(std::string_view style, bool hasNormals, bool hasTexture);
    /// Room in a run for what is to come, which saves moving it as it grows.
    void Reserve(std::size_t run, std::size_t vertices, std::size_t triangles);

    /// Adds a triangle to a run. The source tells of places in its lists: VertexAt and NormalAt three numbers,
    /// TextureAt two.
    template <class Source>
    void Add(std::size_t run, std::array<TriangleCorner, 3> const& corners, std::uint32_t face, Source const& source)
    {
        Content& target = m_runs[run];
        std::array<std::uint32_t, 3> numbers{};
        for (std::size_t i = 0; i < 3; ++i)
            numbers[i] = NumberOf(static_cast<std::uint32_t>(run), target, corners[i], source);
        AppendThree(target.indices, numbers);
        if (m_hasFaces)
            target.faces.push_back(face);
    }

    /// Puts the runs one behind the other into a mesh, with the face of each triangle if there are faces.
    void MoveInto(SceneMesh& mesh);

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
        static constexpr std::uint32_t kNoRun = TriangleCorner::kNone >> 1U;

        std::uint32_t run : 31 = kNoRun;
        /// Whether the index of the run has the corner.
        std::uint32_t isIndexed : 1 = 0;
        std::uint32_t number = 0;
        std::uint32_t normal = 0;
        std::uint32_t texture = 0;
    };

    /// The number of a corner in its run, which gets it if it is new. The triangles around a vertex are neighbours as a
    /// rule, and have the same corner there; and most vertices have one corner alone, which then nobody searches: from
    /// its second one on the corners of a vertex are in the index of their run.
    template <class Source>
    std::uint32_t NumberOf(std::uint32_t run, Content& target, TriangleCorner const& corner, Source const& source)
    {
        Seen& seen = m_seen[corner.vertex];
        if (seen.run == run && seen.normal == corner.normal && seen.texture == corner.texture)
            return seen.number;
        return OtherNumberOf(run, target, seen, corner, source);
    }

    // Apart, so that the way above is short enough to stand where it is called.
    template <class Source>
    [[gnu::noinline]] std::uint32_t OtherNumberOf(std::uint32_t run, Content& target, Seen& seen,
                                                  TriangleCorner const& corner, Source const& source)
    {
        auto const next = static_cast<std::uint32_t>(target.run.vertexCount);
        std::uint32_t number = next;
        bool const isIndexed = seen.run != Seen::kNoRun;
        if (isIndexed)
        {
            if (!seen.isIndexed)
                m_runs[seen.run].numbers.Add({corner.vertex, seen.normal, seen.texture}, seen.number);
            number = target.numbers.Add(corner, next);
        }
        seen.run = run & Seen::kNoRun;
        seen.isIndexed = isIndexed ? 1 : 0;
        seen.number = number;
        seen.normal = corner.normal;
        seen.texture = corner.texture;
        if (number == next)
            AddVertex(target, corner, source);
        return number;
    }

    // In large pages, of which a mesh of millions of triangles takes a hundred, and not fifty thousand small ones.
    template <class Value>
    static void ReserveLarge(std::vector<Value>& list, std::size_t count)
    {
        list.reserve(count);
        AdviseLargePages(list.data(), count * sizeof(Value));
    }

    // A range of three is appended by a call that costs more than they do.
    template <class Number>
    static void AppendThree(std::vector<Number>& list, std::array<Number, 3> const& numbers)
    {
        if (list.capacity() - list.size() < 3)
            ReserveLarge(list, 2 * list.capacity() + 3);
        list.push_back(numbers[0]);
        list.push_back(numbers[1]);
        list.push_back(numbers[2]);
    }

    template <class Source>
    static void AddVertex(Content& target, TriangleCorner const& corner, Source const& source)
    {
        ++target.run.vertexCount;
        std::array<double, 3> const point = source.VertexAt(corner.vertex);
        AppendThree(target.positions, point);
        if (target.run.hasNormals)
            AddNormal(target, source.NormalAt(corner.normal));
        if (target.run.hasTexture)
            for (double const x : source.TextureAt(corner.texture))
                target.texture.push_back(static_cast<float>(x));
    }

    static void AddNormal(Content& target, std::array<double, 3> const& normal);
    void Append(SceneMesh& mesh, Content&& content, bool hasNormals, bool hasTexture) const;

    std::vector<Seen> m_seen;
    bool m_hasFaces;
    std::vector<Content> m_runs;
    std::unordered_map<std::string, std::size_t> m_places;
};

}  // namespace KVR
