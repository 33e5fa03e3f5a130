#include "exchange/run/StagePlan.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace KVR
{

Progress Planned(Progress const& progress, std::vector<PlannedStage> stages)
{
    if (!progress)
        return {};
    double all = 0.0;
    for (PlannedStage const& stage : stages)
        all += stage.share;
    return [&progress, stages = std::move(stages), all, whole = 0.0](ProgressReport report) mutable
    {
        double before = 0.0;
        for (PlannedStage const& stage : stages)
        {
            if (stage.name == std::string_view(report.stage))
            {
                double const done = before + stage.share * std::clamp(report.fraction.value_or(0.0), 0.0, 1.0);
                whole = std::max(whole, done / all);
                break;
            }
            before += stage.share;
        }
        report.whole = whole;
        return progress(report);
    };
}

Progress PartOf(Progress const& progress, double from, double to)
{
    if (!progress)
        return {};
    return [&progress, from, to](ProgressReport report)
    {
        report.whole = from + (to - from) * report.whole;
        return progress(report);
    };
}

}  // namespace KVR
