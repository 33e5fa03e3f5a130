#include "scene/reader/FilterNames.h"
#include "scene/reader/SceneContent.h"
#include "scene/reader/SceneCuts.h"
#include "scene/reader/SceneReduction.h"

namespace KVR
{

namespace
{

void Cut(SceneContent& content, std::size_t component, std::size_t placement)
{
    content.components[component].placements[placement].cut = SceneCut::kFiltered;
    content.cuts.push_back({component, placement, SceneCut::kFiltered});
}

template <class IsOut>
void EraseGeometry(SceneContent& content, std::size_t component, IsOut const& isOut)
{
    content.filteredGeometry += std::erase_if(content.components[component].geometry, isOut);
}

void Hide(SceneContent& content, FilterNames const& hidden)
{
    for (std::size_t index = 0; index < content.components.size(); ++index)
    {
        // Nothing places the root.
        bool const isAll = index == content.root && hidden.Has(content.components[index]);
        std::vector<ScenePlacement> const& placements = content.components[index].placements;
        for (std::size_t i = 0; i < placements.size(); ++i)
            if (placements[i].IsEntered() &&
                (isAll || hidden.Has(placements[i]) || hidden.Has(content.components[placements[i].target])))
                Cut(content, index, i);
        EraseGeometry(content, index,
                      [&](SceneGeometry const& geometry)
                      { return isAll || hidden.Has(geometry) || hidden.HasId(geometry.bodyId); });
    }
}

}  // namespace

void ApplyFilter(SceneContent& content, SceneFilter const& filter)
{
    if (content.root == kNoIndex)
        return;
    std::vector<SceneFilterError::Unmatched> unmatched;
    FilterNames const hidden(content, filter.hide, unmatched);
    FilterNames const only(content, filter.only, unmatched);
    if (!unmatched.empty())
        throw SceneFilterError(std::move(unmatched));
    if (!hidden.IsEmpty())
        Hide(content, hidden);
    if (!only.IsEmpty())
        SceneReduction(content, only, {}).Reduce();
}

void ApplySelection(SceneContent& content, SceneSelection const& selection)
{
    if (content.root == kNoIndex)
        return;
    std::vector<SceneFilterError::Unmatched> unmatched;
    FilterNames const only(content, selection.onlyNames, unmatched);
    if (!unmatched.empty())
        throw SceneFilterError(std::move(unmatched));
    SceneReduction(content, only, selection).Reduce();
}

}  // namespace KVR
