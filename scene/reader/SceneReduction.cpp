#include "scene/reader/SceneReduction.h"

#include <algorithm>
#include <limits>

#include "scene/reader/SceneContent.h"

namespace KVR
{

SceneReduction::SceneReduction(SceneContent& content, FilterNames const& wanted, SceneSelection const& selection)
    : m_content(content), m_wanted(wanted)
{
    ListMarks(selection);
    CountOccurrences();
}

void SceneReduction::ListMarks(SceneSelection const& selection)
{
    m_marks.reserve(selection.only.size() + selection.hide.size());
    for (std::size_t const number : selection.only)
        m_marks.push_back({number, true, false});
    for (std::size_t const number : selection.hide)
        m_marks.push_back({number, false, true});
    std::inplace_merge(m_marks.begin(), m_marks.begin() + static_cast<std::ptrdiff_t>(selection.only.size()),
                       m_marks.end(), [](Mark const& a, Mark const& b) { return a.number < b.number; });
    m_hiddenBefore.reserve(m_marks.size() + 1);
    m_hiddenBefore.push_back(0);
    for (Mark const& mark : m_marks)
        m_hiddenBefore.push_back(m_hiddenBefore.back() + (mark.isHidden ? 1 : 0));
}

// Numbers that are too large stay at the largest: a scene of so many occurrences has no marks.
void SceneReduction::CountOccurrences()
{
    struct Level
    {
        std::size_t component;
        std::size_t next;
    };
    constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max();
    m_counts.assign(m_content.components.size(), 0);
    std::vector<Level> path{{m_content.root, 0}};
    while (!path.empty())
    {
        Level& level = path.back();
        std::size_t const index = level.component;
        std::vector<ScenePlacement> const& placements = m_content.components[index].placements;
        if (level.next < placements.size())
        {
            ScenePlacement const& placement = placements[level.next++];
            if (placement.IsEntered() && m_counts[placement.target] == 0)
                path.push_back({placement.target, 0});
            continue;
        }
        std::size_t count = 1;
        for (ScenePlacement const& placement : placements)
            if (placement.IsEntered())
                count = std::min(count, kMost - m_counts[placement.target]) + m_counts[placement.target];
        m_counts[index] = count;
        path.pop_back();
    }
}

void SceneReduction::Reduce()
{
    Mark const root = MarkOf(0);
    bool const isAll = m_wanted.IsEmpty() && m_hiddenBefore.back() == m_marks.size();
    SceneComponent& component = m_content.components[m_content.root];
    if (root.isHidden)
    {
        m_content.filteredGeometry += component.geometry.size();
        component.geometry.clear();
        for (std::size_t i = 0; i < component.placements.size(); ++i)
            if (component.placements[i].IsEntered())
            {
                component.placements[i].cut = SceneCut::kFiltered;
                m_content.cuts.push_back({m_content.root, i, SceneCut::kFiltered});
            }
        return;
    }
    bool const isWanted = isAll || root.isOnly || m_wanted.Has(component);
    Result result{};
    if (Enter(PlaceOf(m_content.root, 0, isWanted ? Mode::kWanted : Mode::kSearched), result))
        return;
    while (!m_path.empty())
        if (m_path.back().next < m_content.components[m_path.back().copy].placements.size())
            Follow();
        else
            Leave();
    m_content.root = m_last.component;
}

SceneReduction::Mark SceneReduction::MarkOf(std::size_t number) const
{
    Mark sum{number, false, false};
    auto mark = std::lower_bound(m_marks.begin(), m_marks.end(), number,
                                 [](Mark const& a, std::size_t b) { return a.number < b; });
    for (; mark != m_marks.end() && mark->number == number; ++mark)
    {
        sum.isOnly = sum.isOnly || mark->isOnly;
        sum.isHidden = sum.isHidden || mark->isHidden;
    }
    return sum;
}

SceneReduction::Place SceneReduction::PlaceOf(std::size_t component, std::size_t number, Mode mode) const
{
    auto const before = [](Mark const& a, std::size_t b) { return a.number < b; };
    auto const first = std::lower_bound(m_marks.begin(), m_marks.end(), number + 1, before);
    auto const end = std::lower_bound(first, m_marks.end(), number + m_counts[component], before);
    return {component, number, mode, static_cast<std::size_t>(first - m_marks.begin()),
            static_cast<std::size_t>(end - m_marks.begin())};
}

bool SceneReduction::Enter(Place const& place, Result& result)
{
    if (place.mode == Mode::kWanted && m_hiddenBefore[place.firstMark] == m_hiddenBefore[place.endMark])
    {
        result = {place.component, false};
        return true;
    }
    auto const [begin, end] = m_known.equal_range(Digest(place));
    for (auto known = begin; known != end; ++known)
        if (AreSame(known->second.place, place))
        {
            result = known->second.result;
            return true;
        }
    std::size_t const copy = CopyOf(place);
    m_path.push_back({place, copy, 0, place.number + 1, m_content.components[copy].geometry.empty()});
    return false;
}

void SceneReduction::Follow()
{
    Step& step = m_path.back();
    std::size_t const index = step.next++;
    ScenePlacement& placement = m_content.components[step.copy].placements[index];
    if (!placement.IsEntered())
        return;
    std::size_t const number = step.nextNumber;
    step.nextNumber += m_counts[placement.target];
    Mark const mark = MarkOf(number);
    if (mark.isHidden)
    {
        Assign(step, index, {placement.target, true});
        return;
    }
    bool const isWanted = step.place.mode == Mode::kWanted || mark.isOnly || m_wanted.Has(placement) ||
                          m_wanted.Has(m_content.components[placement.target]);
    Result result{};
    if (Enter(PlaceOf(placement.target, number, isWanted ? Mode::kWanted : Mode::kSearched), result))
        Assign(m_path.back(), index, result);
}

void SceneReduction::Leave()
{
    Step const step = m_path.back();
    m_path.pop_back();
    m_last = {step.copy, step.isEmpty && step.place.mode == Mode::kSearched};
    m_known.emplace(Digest(step.place), Known{step.place, m_last});
    if (!m_path.empty())
        Assign(m_path.back(), m_path.back().next - 1, m_last);
}

void SceneReduction::Assign(Step& step, std::size_t placement, Result const& result)
{
    ScenePlacement& entry = m_content.components[step.copy].placements[placement];
    if (result.isEmpty)
    {
        entry.cut = SceneCut::kFiltered;
        m_content.cuts.push_back({step.copy, placement, SceneCut::kFiltered});
        return;
    }
    entry.target = result.component;
    step.isEmpty = false;
}

std::size_t SceneReduction::Digest(Place const& place) const
{
    std::size_t digest = 2 * place.component + (place.mode == Mode::kWanted ? 1 : 0);
    for (std::size_t i = place.firstMark; i < place.endMark; ++i)
        digest = digest * 1099511628211U + 2 * (m_marks[i].number - place.number) + (m_marks[i].isOnly ? 1 : 0);
    return digest;
}

bool SceneReduction::AreSame(Place const& a, Place const& b) const
{
    auto const isSame = [&](Mark const& x, Mark const& y)
    { return x.number - a.number == y.number - b.number && x.isOnly == y.isOnly; };
    auto const at = [&](std::size_t index) { return m_marks.begin() + static_cast<std::ptrdiff_t>(index); };
    return a.component == b.component && a.mode == b.mode &&
           std::equal(at(a.firstMark), at(a.endMark), at(b.firstMark), at(b.endMark), isSame);
}

std::size_t SceneReduction::CopyOf(Place const& place)
{
    std::size_t const copy = m_content.components.size();
    SceneComponent component = m_content.components[place.component];
    if (place.mode == Mode::kSearched)
        m_content.filteredGeometry +=
            std::erase_if(component.geometry, [&](SceneGeometry const& geometry)
                          { return !m_wanted.Has(geometry) && !m_wanted.HasId(geometry.bodyId); });
    m_content.components.push_back(std::move(component));
    return copy;
}

}  // namespace KVR
