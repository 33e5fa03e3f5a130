#include <fmt/format.h>
#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "framework/api/UnitText.h"
#include "host/TextValues.h"
#include "host/views/SceneViews.h"
#include "host/views/Views.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr std::array<std::string_view, 12> kHeads = {"Kind",     "Id",        "Label",   "Shown",  "Type",   "Unit",
                                                     "Position", "Direction", "Members", "Hidden", "Planes", "Cameras"};
constexpr std::string_view kNone = "-";
constexpr std::string_view kGap = "  ";

using Row = std::array<std::string, kHeads.size()>;

std::string Unit(std::optional<UnitTypeEnum> unit)
{
    constexpr std::string_view kPrefix = "kUnitType_";
    char const* const text = unit ? TextOfUnit(*unit) : nullptr;
    return std::string(text ? text + kPrefix.size() : kNone);
}

std::string Triple(double x, double y, double z)
{
    return fmt::format("{}, {}, {}", x, y, z);
}

// Places that a text takes: its characters, since it has no control characters. Wide scripts may stand out a little.
std::size_t WidthOf(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

Row EmptyRow()
{
    Row row;
    row.fill(std::string(kNone));
    return row;
}

Row RowOf(SceneView const& view, std::unordered_set<std::string_view> const& cameraIds)
{
    Row row = EmptyRow();
    row[0] = "view";
    row[1] = Escaped(view.id.View());
    row[2] = Quoted(UTF8String(view.label).View());
    row[3] = view.isVisible ? "yes" : "no";
    row[4] = view.isActive ? "active" : "inactive";
    row[5] = Unit(view.lengthUnit);
    row[8] = std::to_string(view.members);
    row[9] = std::to_string(view.hiddenMembers);
    std::string cameras;
    for (unsigned long long i = 0; i < view.cameras.Size(); ++i)
    {
        std::string_view const id = view.cameras.At(i).View();
        cameras += (i == 0 ? "" : ", ") + Escaped(id) + (cameraIds.contains(id) ? "" : " (missing)");
    }
    if (!cameras.empty())
        row[11] = cameras;
    return row;
}

Row RowOf(SceneCamera const& camera)
{
    Row row = EmptyRow();
    row[0] = camera.isSectionCamera ? "section camera" : "camera";
    row[1] = Escaped(camera.id.View());
    row[2] = Quoted(UTF8String(camera.label).View());
    row[4] = camera.type == ICamera::kCameraType_Perspective ? "perspective" : "parallel";
    row[5] = Unit(camera.lengthUnit);
    row[6] = Triple(camera.position.X(), camera.position.Y(), camera.position.Z());
    row[7] = Triple(camera.direction[0], camera.direction[1], camera.direction[2]);
    if (camera.isSectionCamera)
        row[10] = std::to_string(camera.sectionPlanes.size());
    return row;
}

void PutRow(Output& out, Row const& row, std::array<std::size_t, kHeads.size()> const& widths)
{
    for (std::size_t i = 0; i + 1 < row.size(); ++i)
    {
        out.Put(row[i]);
        out.PutSpaces(widths[i] - WidthOf(row[i]));
        out.Put(kGap);
    }
    out.Put(row.back());
    out.Put('\n');
}

}  // namespace

void WriteViewsAsTable(SceneViews const& views, Output& out)
{
    std::unordered_set<std::string_view> cameraIds;
    for (SceneCamera const& camera : views.cameras)
        cameraIds.insert(camera.id.View());
    std::vector<Row> rows(1);
    std::copy(kHeads.begin(), kHeads.end(), rows.front().begin());
    for (SceneView const& view : views.views)
        rows.push_back(RowOf(view, cameraIds));
    for (SceneCamera const& camera : views.cameras)
        rows.push_back(RowOf(camera));
    std::array<std::size_t, kHeads.size()> widths{};
    for (Row const& row : rows)
    {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], WidthOf(row[i]));
    }
    if (rows.size() > 1)
    {
        for (Row const& row : rows)
            PutRow(out, row, widths);
    }
    auto const sectionCameras = static_cast<std::size_t>(std::count_if(
        views.cameras.begin(), views.cameras.end(), [](SceneCamera const& camera) { return camera.isSectionCamera; }));
    out.Put(fmt::format("{}, {} ({})\n", Counted(views.views.size(), "view", "views"),
                        Counted(views.cameras.size(), "camera", "cameras"),
                        Counted(sectionCameras, "section camera", "section cameras")));
}

}  // namespace KVR
