#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/stats/StatsNames.h"
#include "host/stats/StatsOutput.h"
#include "host/stats/Treemap.h"
#include "inspect/estimate/SizeText.h"
#include "inspect/statistics/SceneStatistics.h"
#include "output/Output.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

// A scene of more components has the others as one part of the treemap.
constexpr std::size_t kMostParts = 400;
constexpr double kWidth = 1200.0;
constexpr double kHeight = 600.0;

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

// Text of a scene in a page: nothing in it is markup.
std::string Html(std::string_view text)
{
    std::string safe;
    for (char const c : text)
        switch (c)
        {
            case '&':
                safe += "&amp;";
                break;
            case '<':
                safe += "&lt;";
                break;
            case '>':
                safe += "&gt;";
                break;
            case '"':
                safe += "&quot;";
                break;
            case '\'':
                safe += "&#39;";
                break;
            default:
                // XML knows no control characters.
                safe += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
        }
    return safe;
}

// The same where other text stands beside it, which its direction does not turn.
std::string Isolated(std::string_view text)
{
    return "<bdi>" + Html(text) + "</bdi>";
}

struct Part
{
    double weight;
    /// As Html gives them.
    std::string name;
    std::string details;
};

// Colours go around the circle in steps that bring neighbours far apart.
std::string FillOf(std::size_t place)
{
    constexpr std::size_t kStep = 137;
    return fmt::format("hsl({} 45% 42%)", place * kStep % 360);
}

void PutMap(std::string const& title, std::vector<Part> parts, Output& out)
{
    std::erase_if(parts, [](Part const& part) { return !(part.weight > 0.0); });
    std::stable_sort(parts.begin(), parts.end(), [](Part const& a, Part const& b) { return a.weight > b.weight; });
    if (parts.size() > kMostParts)
    {
        Part others{0.0, fmt::format("{} others", parts.size() - kMostParts), ""};
        for (std::size_t i = kMostParts; i < parts.size(); ++i)
            others.weight += parts[i].weight;
        parts.resize(kMostParts);
        auto const place =
            std::find_if(parts.begin(), parts.end(), [&](Part const& part) { return part.weight < others.weight; });
        parts.insert(place, others);
    }
    out.Put("<h2>" + title + "</h2>\n");
    if (parts.empty())
    {
        out.Put("<p>none</p>\n");
        return;
    }
    std::vector<double> weights;
    for (Part const& part : parts)
        weights.push_back(part.weight);
    std::vector<TreemapRectangle> const rectangles = TreemapOf(weights, {0.0, 0.0, kWidth, kHeight});
    out.Put(fmt::format("<svg viewBox=\"0 0 {} {}\">\n", kWidth, kHeight));
    for (std::size_t i = 0; i < parts.size(); ++i)
    {
        TreemapRectangle const& at = rectangles[i];
        out.Put(
            fmt::format("<svg x=\"{:.2f}\" y=\"{:.2f}\" width=\"{:.2f}\" height=\"{:.2f}\"><title>{}{}</title>"
                        "<rect width=\"100%\" height=\"100%\" fill=\"{}\" stroke=\"#fff\"/>",
                        at.x, at.y, at.width, at.height, parts[i].name, parts[i].details, FillOf(i)));
        if (at.width > 40.0 && at.height > 18.0)
            out.Put("<text x=\"5\" y=\"15\">" + parts[i].name + "</text>");
        out.Put("</svg>\n");
    }
    out.Put("</svg>\n");
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
                std::to_string(own.triangles), std::to_string(own.triangles * component.occurrences),
                TimeOf(own.seconds), SizeText(own.memory), Isolated(NameOf(shown.scene.Components()[component.index]))},
               "td", out);
    }
    out.Put("</table>\n");
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
    std::vector<Part> byBytes;
    std::vector<Part> byTriangles;
    for (SceneStatistics::Component const& component : statistics.components)
    {
        std::string const name = Html(NameOf(shown.scene.Components()[component.index]));
        double const triangles =
            static_cast<double>(component.own.triangles) * static_cast<double>(component.occurrences);
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
    PutComponents(shown, out);
    PutDuplicates(shown, out);
    out.Put("</body></html>\n");
}

}  // namespace KVR
