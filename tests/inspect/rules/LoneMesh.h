#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "inspect/Check.h"
#include "tests/inspect/rules/MeshPlaces.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

/// A mistake in a store: bytes in the place of others, and what is to be found of it.
struct MeshMistake
{
    struct Change
    {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::string bytes;
    };
    std::string_view rule;
    std::string found;
    /// By their places.
    std::vector<Change> changes;
    /// Whether they are in the segments.
    bool isInSegments = false;
};

/// The bytes of a number as a store has it.
MeshMistake::Change WordChange(std::size_t place, std::uint64_t word);
MeshMistake::Change NumberChange(std::size_t place, double number);

/// A mesh of a scene, with its segments, as the one mesh of a scene of its own, so that a check of it takes next to no
/// time: one mistake at a time is written into its files, looked for, and taken out again.
class LoneMesh
{
public:
    /// A mesh of a store, and what another store says of it, which may be nothing (null).
    LoneMesh(std::string const& store, MeshPlaces const& mesh, std::string const& segments,
             SegmentPlaces const* places);

    std::string const& Store() const noexcept { return m_store; }
    MeshPlaces const& Mesh() const noexcept { return m_mesh; }
    std::string const& SegmentStore() const noexcept { return m_segments; }
    SegmentPlaces const& Segments() const noexcept { return m_places; }

    /// Nothing when the rule alone finds something, once, as it is to be found and at the mesh's element; else what was
    /// found.
    std::string FaultWith(MeshMistake const& mistake) const;

private:
    std::string FaultIn(std::vector<Finding> const& findings, MeshMistake const& mistake) const;
    void Put(MeshMistake const& mistake) const;
    void TakeBack(MeshMistake const& mistake) const;

    TempFolder m_folder;
    std::string m_store;
    std::string m_segments;
    MeshPlaces m_mesh;
    SegmentPlaces m_places;
    std::string m_path;
    std::uint64_t m_line = 0;
};

}  // namespace KVR::Test
