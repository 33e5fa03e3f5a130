#include <algorithm>
#include <array>

#include "describe/Answer.h"
#include "describe/Ask.h"
#include "framework/api/IProducer.h"
#include "framework/api/IUniverse.h"
#include "inspect/Compare.h"
#include "inspect/compare/ComparedScene.h"
#include "inspect/compare/PairChanges.h"
#include "inspect/compare/SceneMatch.h"

namespace KVR
{

namespace
{

// An object that the other scene does not have, unless it belongs to one of those.
bool IsAloneAtTop(ComparedScene const& scene, ComparedObject const& object)
{
    return object.interface && object.match == kNoIndex &&
           (object.owner == kNoIndex || scene.Objects()[object.owner].match != kNoIndex);
}

Answer WholeOf(IProducer& producer)
{
    IUniverse const* const universe = Ask([&] { return producer.LoadUniverse(); }).value_or(nullptr);
    return universe ? AnswersOf({&TableOf<IUniverse>::kTable, universe}) : Answer();
}

constexpr std::array<std::string_view, 15> kKinds{"added", "removed", "moved",          "renamed", "restyled",
                                                  "shown", "hidden",  "re-tessellated", "shape",   "property",
                                                  "note",  "unit",    "view",           "layer",   "other"};
constexpr std::array<std::string_view, 4> kMatches{"id", "persistent id", "name", "geometry"};

}  // namespace

SceneComparison CompareScenes(IProducer& first, IProducer& second)
{
    ComparedScene one(first);
    ComparedScene other(second);
    SceneMatch const match(one, other);
    SceneComparison comparison;
    comparison.firstOccurrences = one.Occurrences();
    comparison.secondOccurrences = other.Occurrences();
    std::copy(match.Counts().begin(), match.Counts().end(), std::begin(comparison.matched));
    PairChanges changes(one, other, match.IsById(), comparison.changes);
    for (std::size_t b = 0; b < other.Objects().size(); ++b)
    {
        ComparedObject const& object = other.Objects()[b];
        if (object.match != kNoIndex)
            changes.Tell(object.match, b);
        else if (IsAloneAtTop(other, object))
            comparison.changes.push_back(changes.Of(ChangeKind::kAdded, kNoIndex, b));
    }
    for (std::size_t a = 0; a < one.Objects().size(); ++a)
        if (IsAloneAtTop(one, one.Objects()[a]))
            comparison.changes.push_back(changes.Of(ChangeKind::kRemoved, a, kNoIndex));
    changes.TellWhole(WholeOf(first), WholeOf(second));
    std::stable_sort(comparison.changes.begin(), comparison.changes.end(),
                     [](SceneChange const& a, SceneChange const& b) { return a.kind < b.kind; });
    return comparison;
}

std::string_view TextOf(ChangeKind kind) noexcept
{
    return kKinds[static_cast<std::size_t>(kind)];
}

std::string_view TextOf(MatchKind kind) noexcept
{
    return kMatches[static_cast<std::size_t>(kind)];
}

}  // namespace KVR
