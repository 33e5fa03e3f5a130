#include "scene/reader/SceneCuts.h"

#include <algorithm>

#include "scene/reader/SceneContent.h"

namespace KVR
{

namespace
{

enum class Mark : unsigned char
{
    kNew,
    kOpen,
    kDone
};

struct Step
{
    std::size_t component;
    std::size_t next;
};

}  // namespace

void CutCycles(SceneContent& content, std::size_t mostLevels)
{
    if (content.root == kNoIndex)
        return;
    std::vector<Mark> marks(content.components.size(), Mark::kNew);
    // How many levels there are below and with a component.
    std::vector<std::size_t> heights(content.components.size(), 1);
    std::vector<Step> path{{content.root, 0}};
    marks[content.root] = Mark::kOpen;
    while (!path.empty())
    {
        Step& step = path.back();
        std::vector<ScenePlacement>& placements = content.components[step.component].placements;
        if (step.next == placements.size())
        {
            marks[step.component] = Mark::kDone;
            std::size_t const height = heights[step.component];
            path.pop_back();
            if (!path.empty())
                heights[path.back().component] = std::max(heights[path.back().component], height + 1);
            continue;
        }
        std::size_t const index = step.next++;
        ScenePlacement& placement = placements[index];
        if (!placement.IsEntered())
            continue;
        std::size_t const target = placement.target;
        bool const isTooDeep = path.size() + heights[target] > mostLevels;
        if (marks[target] == Mark::kOpen || isTooDeep)
        {
            placement.cut = marks[target] == Mark::kOpen ? SceneCut::kCycle : SceneCut::kTooDeep;
            content.cuts.push_back({step.component, index, placement.cut});
        }
        else if (marks[target] == Mark::kDone)
        {
            heights[step.component] = std::max(heights[step.component], heights[target] + 1);
        }
        else
        {
            marks[target] = Mark::kOpen;
            path.push_back({target, 0});
        }
    }
}

}  // namespace KVR
