#include "exchange/source/MemoryLimit.h"

#include <fmt/format.h>

#include "inspect/estimate/SceneCensus.h"
#include "inspect/estimate/SizeText.h"

namespace KVR
{

std::string MemoryProblem(SceneOptions const& options)
{
    if (!options.maxMemory)
        return {};
    SceneCensus const census = SceneCensus::Of(options.path);
    double const needed = census.Cost().bytes;
    auto const allowed = static_cast<double>(*options.maxMemory);
    if (census.problem != DocumentCensus::Problem::kNone || needed <= allowed)
        return {};
    return fmt::format("that takes about {} of memory, and --max-memory allows {}", SizeText(needed),
                       SizeText(allowed));
}

}  // namespace KVR
