#include "inspect/compare/SceneMatch.h"

#include <algorithm>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include "framework/api/IBrep.h"
#include "inspect/compare/BodyMeasures.h"

namespace KVR
{

namespace
{

constexpr char kBetween = '\n';

std::string WithKind(ComparedScene const& scene, std::size_t index, std::string const& key)
{
    return key.empty() ? key : std::string(scene.Objects()[index].interface->name) + kBetween + key;
}

std::string ById(ComparedScene const& scene, std::size_t index)
{
    return WithKind(scene, index, std::string(scene.Objects()[index].id.View()));
}

std::string ByPersistentId(ComparedScene const& scene, std::size_t index)
{
    return WithKind(scene, index, scene.Objects()[index].persistentId);
}

std::string ByLabel(ComparedScene const& scene, std::size_t index)
{
    return WithKind(scene, index, scene.Objects()[index].label);
}

std::string ByShape(ComparedScene const& scene, std::size_t index)
{
    ComparedObject const& object = scene.Objects()[index];
    return object.HasShape() ? WithKind(scene, index, object.shape.Text()) : std::string();
}

// What it says of itself, where that is all there is: a style, a layer.
std::string ByAnswers(ComparedScene const& scene, std::size_t index)
{
    ComparedObject const& object = scene.Objects()[index];
    return object.component == kNoIndex ? WithKind(scene, index, object.rest.Text()) : std::string();
}

// Of a component, or of a body of one.
std::optional<BodyMeasures> MeasuresOf(ComparedScene const& scene, ComparedObject const& object)
{
    if (scene.IsComponent(object))
        return BodyMeasures::Of(*scene.ComponentOf(object));
    SceneGeometry const* const geometry = scene.GeometryOf(object);
    BODY const* const body = geometry && geometry->body ? geometry->body->Body() : nullptr;
    return body ? BodyMeasures::Of(*body) : std::nullopt;
}

}  // namespace

SceneMatch::SceneMatch(ComparedScene& first, ComparedScene& second) : m_first(first), m_second(second)
{
    if (first.Objects().empty() || second.Objects().empty())
        return;
    JoinById(true, false);
    auto const isAny = [](ComparedObject const&) { return true; };
    Indices a = Unmatched(first, isAny);
    Indices b = Unmatched(second, isAny);
    JoinByKey(a, b, &ByPersistentId, MatchKind::kPersistentId, true);
    if (First(0).match == kNoIndex && Second(0).match == kNoIndex && IsSameKind(0, 0))
        Join(0, 0, First(0).id == Second(0).id ? MatchKind::kId : MatchKind::kName);
    GoDown();
    JoinRest();
}

void SceneMatch::Join(std::size_t a, std::size_t b, MatchKind how)
{
    First(a).match = b;
    Second(b).match = a;
    ++m_counts[static_cast<std::size_t>(how)];
    m_isById = m_isById && First(a).id == Second(b).id;
    m_queue.emplace_back(a, b);
}

bool SceneMatch::IsSameKind(std::size_t a, std::size_t b)
{
    return First(a).interface && First(a).interface == Second(b).interface;
}

bool SceneMatch::IsAlike(std::size_t a, std::size_t b)
{
    ComparedObject const& first = First(a);
    ComparedObject const& second = Second(b);
    if (!first.label.empty() && first.label == second.label)
        return true;
    return first.HasShape() ? first.shape == second.shape : first.rest == second.rest;
}

// Whether what two instances place is the same, or may be found to be.
bool SceneMatch::TargetsMayMatch(std::size_t a, std::size_t b, bool mustMatch)
{
    std::size_t const target = First(a).target;
    std::size_t const other = Second(b).target;
    if (target == kNoIndex || other == kNoIndex)
        return target == other;
    if (First(target).match != kNoIndex || Second(other).match != kNoIndex || mustMatch)
        return First(target).match == other;
    return IsSameKind(target, other);
}

void SceneMatch::JoinById(bool mustBeAlike, bool withInstances)
{
    for (std::size_t a = 0; a < m_first.Objects().size(); ++a)
    {
        if (First(a).match != kNoIndex)
            continue;
        std::size_t const b = m_second.Find(First(a).id.View());
        if (b == kNoIndex || Second(b).match != kNoIndex || !IsSameKind(a, b))
            continue;
        bool const isInstance = m_first.PlacementOf(First(a)) != nullptr;
        if (isInstance && (!withInstances || !TargetsMayMatch(a, b, true)))
            continue;
        if (!mustBeAlike || IsAlike(a, b))
            Join(a, b, MatchKind::kId);
    }
}

void SceneMatch::JoinByKey(Indices& first, Indices& second, KeyOf const& keyOf, MatchKind how, bool isUnique,
                           MayMatch const& mayMatch)
{
    std::unordered_map<std::string, Indices> byKey;
    for (std::size_t const b : second)
        if (std::string key = keyOf(m_second, b); !key.empty())
            byKey[std::move(key)].push_back(b);
    std::unordered_map<std::string, std::size_t> taken;
    if (isUnique)
        for (std::size_t const a : first)
            ++taken[keyOf(m_first, a)];
    std::unordered_map<std::string, std::size_t> next;
    for (std::size_t const a : first)
    {
        std::string const key = keyOf(m_first, a);
        auto const found = byKey.find(key);
        if (found == byKey.end() || (isUnique && (found->second.size() > 1 || taken[key] > 1)))
            continue;
        std::size_t& at = next[key];
        if (at == found->second.size())
            continue;
        std::size_t const b = found->second[at];
        if (mayMatch && !mayMatch(a, b))
            continue;
        ++at;
        Join(a, b, how);
    }
    std::erase_if(first, [&](std::size_t a) { return First(a).match != kNoIndex; });
    std::erase_if(second, [&](std::size_t b) { return Second(b).match != kNoIndex; });
}

void SceneMatch::GoDown()
{
    for (; m_done < m_queue.size(); ++m_done)
    {
        JoinTargets();
        auto const [a, b] = m_queue[m_done];
        JoinChildren(a, b);
    }
}

// What instances place that match, for all of them so far.
void SceneMatch::JoinTargets()
{
    for (; m_targeted < m_queue.size(); ++m_targeted)
    {
        std::size_t const target = First(m_queue[m_targeted].first).target;
        std::size_t const other = Second(m_queue[m_targeted].second).target;
        if (target != kNoIndex && other != kNoIndex && First(target).match == kNoIndex &&
            Second(other).match == kNoIndex && IsSameKind(target, other))
            Join(target, other, MatchKind::kName);
    }
}

void SceneMatch::JoinChildren(std::size_t a, std::size_t b)
{
    auto const childrenOf = [](ComparedScene const& scene, std::size_t index)
    {
        Indices children = scene.ChildrenOf(index);
        std::erase_if(children, [&](std::size_t child)
                      { return scene.Objects()[child].match != kNoIndex || !scene.Objects()[child].interface; });
        return children;
    };
    Indices first = childrenOf(m_first, a);
    Indices second = first.empty() ? Indices() : childrenOf(m_second, b);
    auto const join = [&](KeyOf const& keyOf, MatchKind how, MayMatch const& mayMatch)
    {
        if (!first.empty() && !second.empty())
            JoinByKey(first, second, keyOf, how, false, mayMatch);
    };
    auto const may = [&](std::size_t x, std::size_t y) { return TargetsMayMatch(x, y, false); };
    auto const must = [&](std::size_t x, std::size_t y) { return TargetsMayMatch(x, y, true); };
    join(&ById, MatchKind::kId, [&](std::size_t x, std::size_t y) { return may(x, y) && IsAlike(x, y); });
    join(&ByPersistentId, MatchKind::kPersistentId, may);
    join(&ByLabel, MatchKind::kName, may);
    JoinTargets();
    join(&ById, MatchKind::kId, must);
    join(&ByShape, MatchKind::kGeometry, must);
    // What is left of the instances of one component: those that stand where they stood, and those without names in
    // their order.
    auto const byTarget = [&](ComparedScene const& scene, std::size_t index)
    {
        std::size_t target = scene.Objects()[index].target;
        if (target == kNoIndex || scene.Objects()[target].match == kNoIndex)
            return std::string();
        target = &scene == &m_first ? target : scene.Objects()[target].match;
        return std::to_string(target);
    };
    auto const byPlace = [&](ComparedScene const& scene, std::size_t index)
    {
        std::string key = byTarget(scene, index);
        if (ScenePlacement const* const placement = scene.PlacementOf(scene.Objects()[index]);
            placement && !key.empty())
            for (double const number : placement->transform)
                key += ' ' + std::to_string(number);
        return key;
    };
    auto const byTargetAlone = [&](ComparedScene const& scene, std::size_t index)
    { return scene.Objects()[index].label.empty() ? byTarget(scene, index) : std::string(); };
    join(byPlace, MatchKind::kGeometry, {});
    join(byTargetAlone, MatchKind::kGeometry, {});
}

SceneMatch::Indices SceneMatch::Unmatched(ComparedScene const& scene,
                                          std::function<bool(ComparedObject const&)> const& isWanted)
{
    Indices indices;
    for (std::size_t i = 0; i < scene.Objects().size(); ++i)
    {
        ComparedObject const& object = scene.Objects()[i];
        if (object.match == kNoIndex && object.interface && !scene.PlacementOf(object) && isWanted(object))
            indices.push_back(i);
    }
    return indices;
}

void SceneMatch::JoinRest()
{
    auto const isAny = [](ComparedObject const&) { return true; };
    auto const join = [&](KeyOf const& keyOf, MatchKind how, bool isUnique)
    {
        Indices first = Unmatched(m_first, isAny);
        Indices second = Unmatched(m_second, isAny);
        JoinByKey(first, second, keyOf, how, isUnique);
        GoDown();
    };
    join(&ByLabel, MatchKind::kName, true);
    JoinById(false, false);
    GoDown();
    join(&ByShape, MatchKind::kGeometry, false);
    join(&ByAnswers, MatchKind::kGeometry, false);
    JoinByMeasures(true);
    GoDown();
    JoinByMeasures(false);
    GoDown();
    // Instances that went to another component.
    JoinById(false, true);
    GoDown();
}

// Components by all their bodies, or else bodies of which the owners match.
void SceneMatch::JoinByMeasures(bool ofComponents)
{
    constexpr double kTolerance = 1e-6;
    auto const measured = [&](ComparedScene const& scene)
    {
        std::multimap<double, std::pair<std::size_t, BodyMeasures>> byArea;
        auto const isWanted = [&](ComparedObject const& object)
        {
            bool const isOfMatch = object.owner != kNoIndex && scene.Objects()[object.owner].match != kNoIndex;
            return object.HasShape() && scene.IsComponent(object) == ofComponents && (ofComponents || isOfMatch);
        };
        for (std::size_t const index : Unmatched(scene, isWanted))
            if (auto const measures = MeasuresOf(scene, scene.Objects()[index]))
                byArea.emplace(measures->area, std::pair(index, *measures));
        return byArea;
    };
    auto const first = measured(m_first);
    if (first.empty())
        return;
    auto second = measured(m_second);
    for (auto const& [area, entry] : first)
    {
        std::size_t const a = entry.first;
        auto const last = second.upper_bound(area * (1.0 + kTolerance));
        for (auto other = second.lower_bound(area * (1.0 - kTolerance)); other != last; ++other)
        {
            std::size_t const b = other->second.first;
            if (!IsSameKind(a, b) || !entry.second.IsNear(other->second.second, kTolerance))
                continue;
            if (!ofComponents && First(First(a).owner).match != Second(b).owner)
                continue;
            Join(a, b, MatchKind::kGeometry);
            second.erase(other);
            break;
        }
    }
}

}  // namespace KVR
