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
    return [&progress, stages = std::move(stages), all, at = std::size_t{0}, before = 0.0,
            whole = 0.0](ProgressReport report) mutable
    {
        // A child process that has told nothing yet is at what was begun.
        if (report.stage.empty())
            report.stage = stages[at].name;
        // The same stage as before, or the next one of that name.
        double start = before;
        for (std::size_t i = at; i < stages.size(); start += stages[i++].share)
        {
            if (stages[i].name != std::string_view(report.stage))
                continue;
            at = i;
            before = start;
            double const done = before + stages[i].share * std::clamp(report.fraction.value_or(0.0), 0.0, 1.0);
            whole = std::max(whole, done / all);
            break;
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
