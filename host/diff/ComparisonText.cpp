#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <numbers>
#include <string_view>

#include "host/diff/ComparisonOutput.h"
#include "inspect/Compare.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr std::size_t kMostOfAKind = 10;

std::string MotionText(SceneChange const& change)
{
    constexpr double kMillimetres = 1e3;
    constexpr double kDegrees = 180.0 / std::numbers::pi;
    std::string text;
    if (change.distance)
        text = *change.distance < 1.0 ? fmt::format("{:.6g} mm", *change.distance * kMillimetres)
                                      : fmt::format("{:.6g} m", *change.distance);
    if (change.angle)
        text += fmt::format(", {:.6g} degrees", *change.angle * kDegrees);
    else if (change.distance)
        text += ", and stretched or mirrored";
    return text;
}

// What stands behind the name, without blanks at its beginning.
std::string DetailOf(SceneChange const& change)
{
    if (change.kind == ChangeKind::kAdded || change.kind == ChangeKind::kRemoved)
        return change.className;
    std::string text = change.what == "Label" || change.what == "Transform" ? std::string() : Escaped(change.what);
    auto const add = [&](std::string const& piece) { text += (text.empty() || piece.empty() ? "" : ", ") + piece; };
    add(MotionText(change));
    if (change.first == change.second)
        return text;
    auto const shown = [](std::string const& value) { return value.empty() ? std::string("none") : Escaped(value); };
    text += text.empty() ? "" : " ";
    return text + shown(change.first) + " -> " + shown(change.second);
}

}  // namespace

std::string LineOf(SceneChange const& change)
{
    std::string line = Escaped(change.path);
    if (std::string const detail = DetailOf(change); !detail.empty())
        line += ": " + detail;
    if (change.occurrences > 1)
        line += fmt::format(" ({} occurrences)", change.occurrences);
    return line;
}

void WriteComparisonAsText(SceneComparison const& comparison, std::string const& first, std::string const& second,
                           bool all, Output& out)
{
    std::size_t const count = comparison.changes.size();
    for (std::size_t begin = 0, end = 0; begin < count; begin = end)
    {
        ChangeKind const kind = comparison.changes[begin].kind;
        for (end = begin; end < count && comparison.changes[end].kind == kind;)
            ++end;
        out.Put(fmt::format("{} ({})\n", TextOf(kind), end - begin));
        std::size_t const shown = all ? end : std::min(end, begin + kMostOfAKind);
        for (std::size_t i = begin; i < shown; ++i)
            out.Put("  " + LineOf(comparison.changes[i]) + "\n");
        if (shown < end)
            out.Put(fmt::format("  and {} more; --all shows them\n", end - shown));
    }
    out.Put(Escaped(first) + " -> " + Escaped(second) + ": ");
    out.Put(count == 0 ? "nothing changed\n" : fmt::format("{} change{}\n", count, count == 1 ? "" : "s"));
}

}  // namespace KVR
