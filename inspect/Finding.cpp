#include "inspect/Finding.h"

#include <algorithm>
#include <iterator>

#include "inspect/document/DocumentRules.h"
#include "inspect/rules/GeometryRules.h"
#include "inspect/rules/SideFileRules.h"
#include "inspect/rules/UnitRules.h"

namespace KVR
{

namespace
{

std::vector<Rule> CollectRules()
{
    std::vector<Rule> rules;
    for (auto const& group : {DocumentRules(), SideFileRules(), GeometryRules(), UnitRules()})
        std::copy(group.begin(), group.end(), std::back_inserter(rules));
    return rules;
}

}  // namespace

std::span<Rule const> AllRules()
{
    static std::vector<Rule> const rules = CollectRules();
    return rules;
}

Rule const* FindRule(std::string_view idOrName)
{
    std::span<Rule const> const rules = AllRules();
    auto const found = std::find_if(rules.begin(), rules.end(),
                                    [&](Rule const& rule) { return rule.id == idOrName || rule.name == idOrName; });
    return found == rules.end() ? nullptr : &*found;
}

std::string_view TextOf(Severity severity)
{
    constexpr std::string_view kTexts[] = {"note", "warning", "error"};
    return kTexts[static_cast<int>(severity)];
}

}  // namespace KVR
