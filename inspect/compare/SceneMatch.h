#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "inspect/compare/ComparedScene.h"

namespace KVR
{

/// Finds for each object of one scene the one of another that it is, where there is one. Objects of different
/// interfaces never match.
class SceneMatch
{
public:
    /// Sets the matches of both.
    SceneMatch(ComparedScene& first, ComparedScene& second);

    /// How many were matched in each way.
    std::array<std::size_t, 4> const& Counts() const noexcept { return m_counts; }
    /// Whether all that match have the same id.
    bool IsById() const noexcept { return m_isById; }

private:
    using Indices = std::vector<std::size_t>;
    /// Something by which objects are told apart, as one text; an empty one is none.
    using KeyOf = std::function<std::string(ComparedScene const& scene, std::size_t index)>;
    using MayMatch = std::function<bool(std::size_t a, std::size_t b)>;

    ComparedObject& First(std::size_t index) { return m_first.Objects()[index]; }
    ComparedObject& Second(std::size_t index) { return m_second.Objects()[index]; }
    void Join(std::size_t a, std::size_t b, MatchKind how);
    bool IsSameKind(std::size_t a, std::size_t b);
    bool IsAlike(std::size_t a, std::size_t b);
    bool TargetsMayMatch(std::size_t a, std::size_t b, bool mustMatch);
    /// Joins those of one key, in their order. Those that match already are left out of both.
    void JoinByKey(Indices& first, Indices& second, KeyOf const& keyOf, MatchKind how, bool isUnique,
                   MayMatch const& mayMatch = {});
    void JoinById(bool mustBeAlike, bool withInstances);
    void GoDown();
    void JoinChildren(std::size_t a, std::size_t b);
    void JoinTargets();
    void JoinRest();
    void JoinByMeasures(bool ofComponents);
    static Indices Unmatched(ComparedScene const& scene, std::function<bool(ComparedObject const&)> const& isWanted);

    ComparedScene& m_first;
    ComparedScene& m_second;
    std::array<std::size_t, 4> m_counts{};
    bool m_isById = true;
    /// All pairs; how many of them had what they place joined, and their children.
    std::vector<std::pair<std::size_t, std::size_t>> m_queue;
    std::size_t m_targeted = 0;
    std::size_t m_done = 0;
};

}  // namespace KVR
