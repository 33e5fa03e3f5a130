#include "host/stats/StatsMaps.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

#include "host/stats/StatsOutput.h"
#include "host/stats/Treemap.h"
#include "inspect/estimate/SizeText.h"
#include "inspect/statistics/OccurrenceStatistics.h"
#include "output/Output.h"

namespace KVR
{

namespace
{

// A scene of more components has the others as one part of the treemap.
constexpr std::size_t kMostParts = 400;
constexpr TreemapRectangle kWhole{0.0, 0.0, 1200.0, 600.0};
// Where a rectangle has others in it: what is left free around them, and above them for its name.
constexpr double kMargin = 3.0;
constexpr double kHeader = 18.0;
constexpr double kNarrowestNamed = 40.0;

// Colours go around the circle in steps that bring neighbours far apart.
std::string FillOf(std::size_t place)
{
    constexpr std::size_t kStep = 137;
    return fmt::format("hsl({} 45% 42%)", place * kStep % 360);
}

void BeginMap(std::string const& title, bool isEmpty, Output& out)
{
    out.Put("<h2>" + title + "</h2>\n");
    out.Put(isEmpty ? "<p>none</p>\n" : fmt::format("<svg viewBox=\"0 0 {} {}\">\n", kWhole.width, kWhole.height));
}

void PutRectangle(TreemapRectangle const& at, std::size_t color, MapPart const& part, Output& out)
{
    out.Put(
        fmt::format("<svg x=\"{:.2f}\" y=\"{:.2f}\" width=\"{:.2f}\" height=\"{:.2f}\"><title>{}{}</title>"
                    "<rect width=\"100%\" height=\"100%\" fill=\"{}\" stroke=\"#fff\"/>",
                    at.x, at.y, at.width, at.height, part.name, part.details, FillOf(color)));
    if (at.width > kNarrowestNamed && at.height > kHeader)
        out.Put("<text x=\"5\" y=\"15\">" + part.name + "</text>");
    out.Put("</svg>\n");
}

// Where in the rectangle of an occurrence those below it stand; of no size where there is no place.
TreemapRectangle Inside(TreemapRectangle const& outer)
{
    double const top = outer.width > kNarrowestNamed && outer.height > 2.0 * kHeader ? kHeader : kMargin;
    return {outer.x + kMargin, outer.y + top, std::max(0.0, outer.width - 2.0 * kMargin),
            std::max(0.0, outer.height - top - kMargin)};
}

}  // namespace

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

void PutMap(std::string const& title, std::vector<MapPart> parts, Output& out)
{
    std::erase_if(parts, [](MapPart const& part) { return !(part.weight > 0.0); });
    std::stable_sort(parts.begin(), parts.end(),
                     [](MapPart const& a, MapPart const& b) { return a.weight > b.weight; });
    if (parts.size() > kMostParts)
    {
        MapPart others{0.0, fmt::format("{} others", parts.size() - kMostParts), ""};
        for (std::size_t i = kMostParts; i < parts.size(); ++i)
            others.weight += parts[i].weight;
        parts.resize(kMostParts);
        auto const place =
            std::find_if(parts.begin(), parts.end(), [&](MapPart const& part) { return part.weight < others.weight; });
        parts.insert(place, others);
    }
    std::vector<double> weights;
    for (MapPart const& part : parts)
        weights.push_back(part.weight);
    BeginMap(title, parts.empty(), out);
    if (parts.empty())
        return;
    std::vector<TreemapRectangle> const rectangles = TreemapOf(weights, kWhole);
    for (std::size_t i = 0; i < parts.size(); ++i)
        PutRectangle(rectangles[i], i, parts[i], out);
    out.Put("</svg>\n");
}

void PutOccurrenceMap(std::string const& title, OccurrenceStatistics const& occurrences, Output& out)
{
    auto const& largest = occurrences.Largest();
    std::size_t const count = std::min(kMostOnMap, largest.size());
    auto const bytesOf = [&](std::size_t i) { return occurrences.AmountOf(largest[i]).bytes; };
    bool const isEmpty = count == 0 || !(bytesOf(0) > 0.0);
    BeginMap(title, isEmpty, out);
    if (isEmpty)
        return;
    // Those below each, the largest first as they are listed.
    std::vector<std::vector<std::size_t>> below(count);
    for (std::size_t i = 1; i < count && bytesOf(i) > 0.0; ++i)
        below[largest[i].above].push_back(i);
    std::vector<TreemapRectangle> places(count);
    places[0] = kWhole;
    for (std::size_t i = 0; i < count; ++i)
    {
        if (!(places[i].width > 0.0 && places[i].height > 0.0))
            continue;
        PutRectangle(places[i], largest[i].component,
                     {0.0, Html(occurrences.NameOf(largest[i])), ": " + SizeText(bytesOf(i))}, out);
        // What is its own, or of those that are not listed, stays free.
        double rest = bytesOf(i);
        std::vector<double> weights;
        for (std::size_t const child : below[i])
        {
            weights.push_back(bytesOf(child));
            rest -= weights.back();
        }
        std::size_t free = weights.size();
        if (rest > 1e-6 * bytesOf(i))
        {
            auto const place =
                std::find_if(weights.begin(), weights.end(), [&](double weight) { return weight < rest; });
            free = static_cast<std::size_t>(place - weights.begin());
            weights.insert(place, rest);
        }
        TreemapRectangle const inside = Inside(places[i]);
        if (below[i].empty() || !(inside.width > 0.0 && inside.height > 0.0))
            continue;
        std::vector<TreemapRectangle> const rectangles = TreemapOf(weights, inside);
        for (std::size_t k = 0; k < below[i].size(); ++k)
            places[below[i][k]] = rectangles[k + (k >= free ? 1 : 0)];
    }
    out.Put("</svg>\n");
}

}  // namespace KVR
