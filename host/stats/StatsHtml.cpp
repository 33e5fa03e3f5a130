#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/stats/StatsMaps.h"
#include "host/stats/StatsNames.h"
#include "host/stats/StatsOutput.h"
#include "inspect/estimate/SizeText.h"
#include "inspect/statistics/OccurrenceStatistics.h"
#include "output/Output.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

constexpr char kHead[] = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'">
<style>
body { font: 14px sans-serif; margin: 2em auto; max-width: 1240px; color: #222; }
table { border-collapse: collapse; }
td, th { padding: 2px 10px; text-align: right; border-bottom: 1px solid #ddd; }
td:last-child, th:last-child { text-align: left; }
svg { width: 100%; height: auto; }
svg text { font-size: 12px; fill: #fff; pointer-events: none; }
</style>
)";

// Html where other text stands beside it, which its direction does not turn.
std::string Isolated(std::string_view text)
{
    return "<bdi>" + Html(text) + "</bdi>";
}

void PutRow(std::vector<std::string> const& cells, char const* tag, Output& out)
{
    out.Put("<tr>");
    for (std::string const& cell : cells)
        out.Put(fmt::format("<{0}>{1}</{0}>", tag, cell));
    out.Put("</tr>\n");
}

void PutComponents(ShownStatistics const& shown, Output& out)
{
    SceneStatistics const& statistics = shown.statistics;
    out.Put("<h2>Components</h2>\n<table>\n");
    PutRow({"Count", "Bytes", "Faces", "Triangles", "All triangles", "Time", "Memory", "Component"}, "th", out);
    for (std::size_t i = 0; i < std::min(shown.most, statistics.components.size()); ++i)
    {
        SceneStatistics::Component const& component = statistics.components[i];
        SceneStatistics::Amount const& own = component.own;
        PutRow({std::to_string(component.occurrences), SizeText(own.bytes), std::to_string(own.faces),
                std::to_string(own.triangles), std::to_string(AllTrianglesOf(component)), TimeOf(own.seconds),
                SizeText(own.memory), Isolated(NameOf(shown.scene.Components()[component.index]))},
               "td", out);
    }
    out.Put("</table>\n");
}

void PutOccurrences(ShownStatistics const& shown, Output& out)
{
    OccurrenceStatistics const& occurrences = shown.occurrences;
    out.Put("<h2>Occurrences</h2>\n<table>\n");
    PutRow({"Count", "Share", "Faces", "Triangles", "Time", "Memory", "Occurrence"}, "th", out);
    std::size_t const listed = std::min(shown.most, occurrences.Largest().size());
    for (std::size_t i = 0; i < listed; ++i)
    {
        OccurrenceStatistics::Occurrence const& occurrence = occurrences.Largest()[i];
        SceneStatistics::Amount const& amount = occurrences.AmountOf(occurrence);
        PutRow({std::to_string(occurrences.CountOf(occurrence)), SizeText(amount.bytes), std::to_string(amount.faces),
                std::to_string(amount.triangles), TimeOf(amount.seconds), SizeText(amount.memory),
                Isolated(occurrences.PathOf(occurrence))},
               "td", out);
    }
    out.Put("</table>\n");
    if (occurrences.Count() > listed)
        out.Put(fmt::format("<p>{} more</p>\n", occurrences.Count() - listed));
}

void PutDuplicates(ShownStatistics const& shown, Output& out)
{
    SceneStatistics const& statistics = shown.statistics;
    out.Put("<h2>Duplicates</h2>\n");
    if (statistics.duplicates.empty())
    {
        out.Put("<p>none</p>\n");
        return;
    }
    out.Put("<p>Sharing what is there more than once would save " + SizeText(statistics.saved.bytes) + ".</p>\n");
    out.Put("<table>\n");
    PutRow({"Alike", "Saved", "But for a motion", "Objects"}, "th", out);
    for (std::size_t i = 0; i < std::min(shown.most, statistics.duplicates.size()); ++i)
    {
        SceneStatistics::Duplicates const& entry = statistics.duplicates[i];
        std::string names;
        for (GeometryTwins::Member const& member : entry.twins.members)
            names += (names.empty() ? "" : ", ") + Isolated(IdOf(member));
        PutRow({std::to_string(entry.twins.members.size()), SizeText(entry.saved.bytes),
                entry.twins.areMoved ? "yes" : "no", names},
               "td", out);
    }
    out.Put("</table>\n");
}

}  // namespace

void WriteStatsAsHtml(ShownStatistics const& shown, Output& out)
{
    SceneStatistics const& statistics = shown.statistics;
    std::vector<MapPart> byBytes;
    std::vector<MapPart> byTriangles;
    for (SceneStatistics::Component const& component : statistics.components)
    {
        std::string const name = Html(NameOf(shown.scene.Components()[component.index]));
        auto const triangles = static_cast<double>(AllTrianglesOf(component));
        byBytes.push_back({component.own.bytes, name, ": " + SizeText(component.own.bytes)});
        byTriangles.push_back({triangles, name, fmt::format(": {:.0f} triangles", triangles)});
    }
    out.Put(kHead);
    std::string const title = Html(shown.path);
    out.Put("<title>kvr stats</title></head><body>\n<h1>" + title + "</h1>\n");
    out.Put(
        fmt::format("<p>{} components with geometry, {} bodies, {} meshes, {} triangles; {} triangles in {} "
                    "occurrences. {} of geometry in side files, about {} of memory; read in {}.</p>\n",
                    statistics.components.size(), statistics.all.bodies, statistics.all.meshes,
                    statistics.all.triangles, statistics.occurring.triangles, statistics.occurrences,
                    SizeText(statistics.all.bytes), SizeText(statistics.all.memory), TimeOf(statistics.seconds)));
    PutMap("Bytes in side files", std::move(byBytes), out);
    PutMap("Triangles, as often as they occur", std::move(byTriangles), out);
    PutOccurrenceMap("Bytes in side files, as occurrences share them", shown.occurrences, out);
    PutComponents(shown, out);
    PutOccurrences(shown, out);
    PutDuplicates(shown, out);
    out.Put("</body></html>\n");
}

}  // namespace KVR
