#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "inspect/statistics/SceneStatistics.h"

namespace KVR
{

struct ScenePlacement;

/// What the geometry of a scene takes, by occurrence: each with all that is below it. Bodies, meshes, faces, triangles
/// and vertices are those that stand there, each in full. Bytes, seconds and memory are there once however often a
/// component occurs, so that each of its occurrences has an equal share of them, and the root has those of the scene.
class OccurrenceStatistics
{
public:
    /// No more occurrences are ever listed.
    static constexpr std::size_t kMost = 10'000'000;

    struct Occurrence
    {
        /// Among those of the scene.
        std::size_t component;
        /// Null for the root.
        ScenePlacement const* placement;
        /// The place in the list of the occurrence above, which is never behind; kNoIndex for the root.
        std::size_t above;
    };

    /// Lists so many, the largest in bytes first, without going through the others: it takes time and memory in
    /// proportion to the components and to what is listed. The scene must outlive it.
    OccurrenceStatistics(Scene const& scene, SceneStatistics const& statistics, std::size_t most);

    /// Of those that have geometry, or something below them that has.
    std::vector<Occurrence> const& Largest() const noexcept { return m_largest; }
    /// How many they are in all, those included that are not listed; it stops at the largest number.
    unsigned long long Count() const noexcept { return m_count; }

    // Of occurrences of the list.

    SceneStatistics::Amount const& AmountOf(Occurrence const& occurrence) const;
    /// How often its component occurs.
    unsigned long long CountOf(Occurrence const& occurrence) const;
    /// The label of its instance, or else of its component, or else the id.
    std::string_view NameOf(Occurrence const& occurrence) const;
    /// The names from the root to it, with "/" between them.
    std::string PathOf(Occurrence const& occurrence) const;

private:
    void List(std::size_t most);
    std::vector<std::size_t> LargestFirst(std::size_t component) const;
    bool IsAnything(std::size_t component) const;

    Scene const* m_scene;
    /// By component, each of them with all below it.
    std::vector<SceneStatistics::Amount> m_amounts;
    std::vector<unsigned long long> m_occurrencesOf;
    std::vector<Occurrence> m_largest;
    unsigned long long m_count = 0;
};

}  // namespace KVR
