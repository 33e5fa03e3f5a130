#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/TextValues.h"
#include "host/stats/StatsNames.h"
#include "host/stats/StatsOutput.h"
#include "inspect/estimate/SizeText.h"
#include "inspect/statistics/OccurrenceStatistics.h"
#include "output/Output.h"
#include "output/SafeText.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

using Line = std::vector<std::string>;

// Numbers stand at the right of their columns, names at the left of the last one.
void PutTable(std::vector<Line> const& lines, Output& out)
{
    Line::size_type const numbers = lines.front().size() - 1;
    std::vector<std::size_t> widths(numbers, 0);
    for (Line const& line : lines)
        for (std::size_t i = 0; i < numbers; ++i)
            widths[i] = std::max(widths[i], line[i].size());
    for (Line const& line : lines)
    {
        for (std::size_t i = 0; i < numbers; ++i)
        {
            out.PutSpaces(widths[i] - line[i].size());
            out.Put(line[i]);
            out.Put("  ");
        }
        out.Put(line.back() + "\n");
    }
}

void PutComponents(ShownStatistics const& shown, Output& out)
{
    auto const& components = shown.statistics.components;
    std::vector<Line> lines{{"Count", "Bytes", "Faces", "Triangles", "All", "Time", "Memory", "Component"}};
    for (std::size_t i = 0; i < std::min(shown.most, components.size()); ++i)
    {
        auto const& [index, occurrences, own] = components[i];
        lines.push_back({std::to_string(occurrences), SizeText(own.bytes), std::to_string(own.faces),
                         std::to_string(own.triangles), std::to_string(AllTrianglesOf(components[i])),
                         TimeOf(own.seconds), SizeText(own.memory), Escaped(NameOf(shown.scene.Components()[index]))});
    }
    PutTable(lines, out);
    if (components.size() > shown.most)
        out.Put(Counted(components.size() - shown.most, "more component", "more components") + "\n");
}

void PutOccurrences(ShownStatistics const& shown, Output& out)
{
    OccurrenceStatistics const& occurrences = shown.occurrences;
    std::vector<Line> lines{{"Count", "Share", "Faces", "Triangles", "Time", "Memory", "Occurrence"}};
    for (OccurrenceStatistics::Occurrence const& occurrence : occurrences.Largest())
    {
        SceneStatistics::Amount const& amount = occurrences.AmountOf(occurrence);
        lines.push_back({std::to_string(occurrences.CountOf(occurrence)), SizeText(amount.bytes),
                         std::to_string(amount.faces), std::to_string(amount.triangles), TimeOf(amount.seconds),
                         SizeText(amount.memory), Escaped(occurrences.PathOf(occurrence))});
    }
    PutTable(lines, out);
    if (unsigned long long const more = occurrences.Count() - occurrences.Largest().size(); more > 0)
        out.Put(Counted(more, "more occurrence", "more occurrences") + "\n");
}

void PutDuplicates(ShownStatistics const& shown, Output& out)
{
    SceneStatistics const& statistics = shown.statistics;
    for (std::size_t i = 0; i < std::min(shown.most, statistics.duplicates.size()); ++i)
    {
        SceneStatistics::Duplicates const& entry = statistics.duplicates[i];
        std::string names;
        constexpr std::size_t kMostNames = 5;
        auto const& members = entry.twins.members;
        for (std::size_t k = 0; k < std::min(kMostNames, members.size()); ++k)
            names += (k == 0 ? "" : ", ") + Escaped(IdOf(members[k]));
        if (members.size() > kMostNames)
            names += fmt::format(" and {} more", members.size() - kMostNames);
        out.Put(fmt::format("{} alike{}: {}; sharing one saves {}\n",
                            Counted(members.size(), entry.saved.meshes > 0 ? "mesh" : "body",
                                    entry.saved.meshes > 0 ? "meshes" : "bodies"),
                            entry.twins.areMoved ? " but for a motion" : "", names, SizeText(entry.saved.bytes)));
    }
    if (statistics.duplicates.size() > shown.most)
        out.Put(
            Counted(statistics.duplicates.size() - shown.most, "more set of duplicates", "more sets of duplicates") +
            "\n");
}

}  // namespace

void WriteStatsAsText(ShownStatistics const& shown, Output& out)
{
    SceneStatistics const& statistics = shown.statistics;
    PutComponents(shown, out);
    PutOccurrences(shown, out);
    PutDuplicates(shown, out);
    SceneStatistics::Amount const& all = statistics.all;
    out.Put(fmt::format("{}, {}, {}, {}; {} in {}\n",
                        Counted(statistics.components.size(), "component with geometry", "components with geometry"),
                        Counted(all.bodies, "body", "bodies"), Counted(all.meshes, "mesh", "meshes"),
                        Counted(all.triangles, "triangle", "triangles"),
                        Counted(statistics.occurring.triangles, "triangle", "triangles"),
                        Counted(statistics.occurrences, "occurrence", "occurrences")));
    out.Put(fmt::format("{} of geometry in side files, about {} of memory; read in {}\n", SizeText(all.bytes),
                        SizeText(all.memory), TimeOf(statistics.seconds)));
    if (!statistics.duplicates.empty())
        out.Put(fmt::format("sharing what is there more than once would save {}, about {} of memory\n",
                            SizeText(statistics.saved.bytes), SizeText(statistics.saved.memory)));
}

}  // namespace KVR
