#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "scene/SceneSelection.h"
#include "scene/reader/FilterNames.h"

namespace KVR
{

struct SceneContent;

/// Takes out of a scene what is not wanted. Components under something wanted stay as they are. Others keep what leads
/// to something wanted: since a component may stand under both, the second kind is a copy, made where one is needed,
/// and shared by all occurrences of which the same is wanted.
class SceneReduction
{
public:
    /// Names and the selection's lists of occurrences, not its names, say what is wanted; all without any. The scene
    /// must have a root. All three must outlive it.
    SceneReduction(SceneContent& content, FilterNames const& wanted, SceneSelection const& selection);

    void Reduce();

private:
    enum class Mode : unsigned char
    {
        /// What stands here is wanted, but for what is left out below it.
        kWanted,
        /// Something below may be.
        kSearched
    };
    /// A component where it occurs, with the marks of what is below it.
    struct Place
    {
        std::size_t component;
        std::size_t number;
        Mode mode;
        std::size_t firstMark;
        std::size_t endMark;
    };
    struct Result
    {
        std::size_t component;
        bool isEmpty;
    };
    struct Known
    {
        Place place;
        Result result;
    };
    struct Step
    {
        Place place;
        std::size_t copy;
        std::size_t next;
        /// The number of the next occurrence below it.
        std::size_t nextNumber;
        bool isEmpty;
    };
    /// Of an occurrence.
    struct Mark
    {
        std::size_t number;
        bool isOnly;
        bool isHidden;
    };

    void ListMarks(SceneSelection const& selection);
    void CountOccurrences();
    Mark MarkOf(std::size_t number) const;
    Place PlaceOf(std::size_t component, std::size_t number, Mode mode) const;
    /// Whether the place can stay as it is, or what it comes to is known; else a step is begun.
    bool Enter(Place const& place, Result& result);
    void Follow();
    void Leave();
    void Assign(Step& step, std::size_t placement, Result const& result);
    std::size_t Digest(Place const& place) const;
    bool AreSame(Place const& a, Place const& b) const;
    std::size_t CopyOf(Place const& place);

    SceneContent& m_content;
    FilterNames const& m_wanted;
    std::vector<Mark> m_marks;
    /// How many of the marks in front of each are of what is left out.
    std::vector<std::size_t> m_hiddenBefore;
    /// Of each component, that of itself and all below it.
    std::vector<std::size_t> m_counts;
    std::unordered_multimap<std::size_t, Known> m_known;
    std::vector<Step> m_path;
    Result m_last{};
};

}  // namespace KVR
