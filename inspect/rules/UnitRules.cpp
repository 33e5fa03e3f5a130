#include "inspect/rules/UnitRules.h"

#include <array>
#include <cstdio>
#include <string>

#include "framework/api/LengthUnits.h"
#include "framework/api/UnitText.h"
#include "inspect/SceneCheck.h"
#include "inspect/geometry/SceneUnits.h"
#include "inspect/rules/SceneModel.h"
#include "inspect/rules/Texts.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

enum : std::size_t
{
    kOtherUnit,
    kGiantParts,
};

constexpr auto kRules = std::to_array<Rule>({
    {"K-0501", "other-unit", "A component is in another unit of length than the assembly that places it",
     Severity::kWarning},
    {"K-0502", "giant-parts", "All parts are so large that the unit of length seems to be mistaken",
     Severity::kWarning},
});

std::string UnitName(UnitTypeEnum unit)
{
    char const* const text = TextOfUnit(unit);
    return text ? text : "";
}

void CheckUnitChanges(SceneCheck& check, Scene const& scene)
{
    if (!check.IsWanted(kRules[kOtherUnit]))
        return;
    for (UnitChange const& change : UnitChange::Of(scene))
    {
        SceneComponent const& above = scene.Components()[change.above];
        SceneComponent const& below = scene.Components()[change.below];
        check.Add(kRules[kOtherUnit], Spot{check.ElementOf(below.id)}, UnitName(below.unit),
                  "it is scaled where " + std::string(above.id) + " places it, which is in " + UnitName(above.unit),
                  UnitName(above.unit));
    }
}

void CheckGiantParts(SceneCheck& check, Scene const& scene)
{
    if (!check.IsWanted(kRules[kGiantParts]))
        return;
    std::optional<GiantParts> const giants = GiantParts::Of(scene);
    if (!giants)
        return;
    SceneComponent const& smallest = scene.Components()[giants->smallest];
    std::array<char, 64> length{};
    std::snprintf(length.data(), length.size(), "%.3g m", giants->length);
    check.Add(kRules[kGiantParts], Spot{check.ElementOf(smallest.id)}, UnitName(smallest.unit),
              "the smallest of " + Counted(giants->count, "part") + " is " + length.data() + " long",
              UnitName(kUnitType_Millimeter));
}

}  // namespace

std::span<Rule const> UnitRules()
{
    return kRules;
}

void CheckUnits(SceneCheck& check)
{
    if (!check.IsWanted(kRules[kOtherUnit]) && !check.IsWanted(kRules[kGiantParts]))
        return;
    std::optional<Scene> const scene = SceneModel(check);
    if (!scene)
        return;
    CheckUnitChanges(check, *scene);
    CheckGiantParts(check, *scene);
}

}  // namespace KVR
