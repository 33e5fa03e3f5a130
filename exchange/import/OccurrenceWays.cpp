#include "exchange/import/OccurrenceWays.h"

#include <algorithm>

namespace KVR
{

OccurrenceWays::OccurrenceWays(ProductPlan const& plan)
    : m_uses(plan.components.size()), m_isRoot(plan.components.size())
{
    for (std::size_t const root : plan.roots)
        m_isRoot[root] = true;
    for (std::size_t i = 0; i < plan.components.size(); ++i)
    {
        ComponentPlan const& component = plan.components[i];
        for (std::size_t k = 0; k < component.instances.size(); ++k)
        {
            m_uses[component.origins[k].target].push_back({i, component.instances[k].id});
            Put(component.instances[k].id, i);
        }
        m_holders.emplace(component.id.View(), i);
    }
}

void OccurrenceWays::Put(UTF8String const& id, std::size_t component)
{
    m_holders.emplace(id.View(), component);
}

void OccurrenceWays::Lead(Authoring::ViewRecord& view, Losses& losses) const
{
    auto const members = std::move(view.members);
    view.members.clear();
    for (auto const& member : members)
    {
        auto const holder = m_holders.find(std::string(member.path.front().View()));
        Paths const paths = holder == m_holders.end() ? Paths(1) : To(holder->second);
        if (paths.size() > kMost)
            losses.AddItem("further occurrences of members of views", std::string(view.label.View()));
        for (std::size_t i = 0; i < std::min(paths.size(), kMost); ++i)
        {
            view.members.push_back(member);
            Authoring::OccurrencePath& path = view.members.back().path;
            path.insert(path.begin(), paths[i].begin(), paths[i].end());
        }
    }
}

// One more than are told, where there are more. A component that is placed occurs, so that each step up leads to a
// root.
OccurrenceWays::Paths OccurrenceWays::To(std::size_t component) const
{
    struct Work
    {
        std::size_t component = 0;
        Authoring::OccurrencePath path;
    };
    Paths paths;
    std::vector<Work> work{{component, {}}};
    while (!work.empty() && paths.size() <= kMost)
    {
        Work const at = std::move(work.back());
        work.pop_back();
        std::vector<Use> const& uses = m_uses[at.component];
        for (std::size_t i = std::min(uses.size(), kMost + 1); i-- > 0;)
        {
            work.push_back({uses[i].assembly, at.path});
            work.back().path.insert(work.back().path.begin(), uses[i].instance);
        }
        if (m_isRoot[at.component])
            paths.push_back(at.path);
    }
    return paths;
}

}  // namespace KVR
