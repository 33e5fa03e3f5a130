#include "host/StatsCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "exchange/source/SceneReading.h"
#include "host/CommonOptions.h"
#include "host/NumberRange.h"
#include "host/stats/StatsOutput.h"
#include "inspect/statistics/OccurrenceStatistics.h"
#include "inspect/statistics/ReadingMeter.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

constexpr NumberRange kMost{0, 1e9, true};

}  // namespace

StatsCommand::StatsCommand(CLI::App& program)
    : SceneCommand(
          program, "stats",
          "Show what the geometry of a scene takes, by component and by occurrence: bytes, faces, triangles, time "
          "to read and memory; and which meshes and bodies are there more than once")
{
    CLI::App& arguments = Arguments();
    AddJsonOption(arguments, m_asJson);
    CLI::Option* const html = arguments.add_flag(
        "--html", m_asHtml, "Print a page of HTML with treemaps, which needs nothing from outside itself");
    html->excludes(arguments.get_option("--json"));
    kMost.Check(*arguments
                     .add_option("--most", m_most,
                                 "List so many components, occurrences and sets of duplicates; all are counted")
                     ->type_name("N")
                     ->capture_default_str());
}

StatsCommand::~StatsCommand() = default;

void StatsCommand::BeginReading()
{
    m_meter = std::make_unique<ReadingMeter>(Scene().prefix.has_value());
}

void StatsCommand::EndReading()
{
    m_meter->Stop();
}

std::string StatsCommand::Show(IProducer& producer, SceneReading const& reading, Output& out)
{
    if (!reading.rootId)
        return OfScene("the scene has no root file, so there is nothing to count");
    KVR::Scene const scene(producer, *reading.rootId);
    SceneStatistics const statistics = SceneStatistics::Of(scene, *m_meter);
    OccurrenceStatistics const occurrences(scene, statistics, m_asHtml ? std::max(m_most, kMostOnMap) : m_most);
    ShownStatistics const shown{scene, statistics, occurrences, Scene().path, m_most};
    if (m_asJson)
        WriteStatsAsJson(shown, out);
    else if (m_asHtml)
        WriteStatsAsHtml(shown, out);
    else
        WriteStatsAsText(shown, out);
    return {};
}

}  // namespace KVR
