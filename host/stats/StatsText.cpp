#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "host/TextValues.h"
#include "host/stats/StatsNames.h"
#include "host/stats/StatsOutput.h"
#include "inspect/estimate/SizeText.h"
#include "inspect/statistics/SceneStatistics.h"
#include "output/Output.h"
#include "output/SafeText.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

constexpr std::size_t kColumns = 8;
using Line = std::array<std::string, kColumns>;

Line LineOf(SceneStatistics::Amount const& amount, unsigned long long occurrences, std::string name)
{
    return {std::to_string(occurrences),
            SizeText(amount.bytes),
            std::to_string(amount.faces),
            std::to_string(amount.triangles),
            std::to_string(amount.triangles * occurrences),
            TimeOf(amount.seconds),
            SizeText(amount.memory),
            std::move(name)};
}

// Numbers stand at the right of their columns, names at the left of the last one.
void PutTable(std::vector<Line> const& lines, Output& out)
{
    std::array<std::size_t, kColumns - 1> widths{};
    for (Line const& line : lines)
        for (std::size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], line[i].size());
    for (Line const& line : lines)
    {
        for (std::size_t i = 0; i < widths.size(); ++i)
        {
            out.PutSpaces(widths[i] - line[i].size());
            out.Put(line[i]);
            out.Put("  ");
        }
        out.Put(line.back() + "\n");
    }
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
    std::vector<Line> lines{{"Count", "Bytes", "Faces", "Triangles", "All", "Time", "Memory", "Component"}};
    for (std::size_t i = 0; i < std::min(shown.most, statistics.components.size()); ++i)
    {
        SceneStatistics::Component const& component = statistics.components[i];
        lines.push_back(
            LineOf(component.own, component.occurrences, Escaped(NameOf(shown.scene.Components()[component.index]))));
    }
    PutTable(lines, out);
    if (statistics.components.size() > shown.most)
        out.Put(Counted(statistics.components.size() - shown.most, "more component", "more components") + "\n");
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
