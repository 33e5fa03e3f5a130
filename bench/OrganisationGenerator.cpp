#include "bench/OrganisationGenerator.h"

#include <fmt/format.h>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>

namespace KVR::Bench
{

namespace
{

constexpr unsigned kMembers = 100'000;
constexpr unsigned kItems = 1'000'000;
constexpr unsigned kGroups = 10'000;
constexpr unsigned kItemsPerGroup = 10;
constexpr unsigned kRepeatsPerPath = 10;

void AddMembers(fmt::memory_buffer& text, std::string_view view, unsigned members, unsigned paths)
{
    auto const out = std::back_inserter(text);
    fmt::format_to(out, "    <ViewSet>\n      <IView ID=\"{}\" Label=\"Exploded\">\n        <ViewMember>\n", view);
    for (unsigned i = 0; i < members; ++i)
    {
        fmt::format_to(
            out,
            "          <ViewMemberChild>\n            <OccurrencePath Path=\"[asm{0}][inst{1}][part{2}]\"/>\n"
            "            <EntityVisibility Visibility=\"{3}\"/>\n",
            i % paths % 100, i % paths, i % 500, i % 8 == 0 ? 0 : 1);
        // Of four members one is moved, and one has a style.
        if (i % 4 == 1)
            fmt::format_to(out, "            <Transform>1 0 0 {} 0 1 0 {} 0 0 1 0.5 0 0 0 1</Transform>\n", i * 0.25,
                           i);
        if (i % 4 == 2)
            fmt::format_to(out, "            <Styles><StyleRef ID=\"style{}\"/></Styles>\n", i % 50);
        fmt::format_to(out, "          </ViewMemberChild>\n");
    }
    fmt::format_to(out, "        </ViewMember>\n      </IView>\n    </ViewSet>\n");
}

void AddLayer(fmt::memory_buffer& text, unsigned items)
{
    auto const out = std::back_inserter(text);
    fmt::format_to(out,
                   "    <LayerSet>\n      <ILayer ID=\"layer\" Label=\"Everything\">\n        <LayerInfo ID=\"1\"/>\n"
                   "        <GeometryItems Items=\"");
    for (unsigned i = 0; i < items; ++i)
        fmt::format_to(out, "{}item{}", i == 0 ? "" : ",", i);
    fmt::format_to(out, "\"/>\n      </ILayer>\n    </LayerSet>\n");
}

void AddGroups(fmt::memory_buffer& text, unsigned groups)
{
    auto const out = std::back_inserter(text);
    fmt::format_to(out, "    <GroupSet>\n");
    for (unsigned i = 0; i < groups; ++i)
    {
        fmt::format_to(out, "      <IGroup ID=\"group{0}\" Label=\"Group {0}\">\n        <GeometryItems Items=\"", i);
        for (unsigned item = 0; item < kItemsPerGroup; ++item)
            fmt::format_to(out, "{}item{}", item == 0 ? "" : ",", i * kItemsPerGroup + item);
        fmt::format_to(out, "\"/>\n      </IGroup>\n");
    }
    fmt::format_to(out, "    </GroupSet>\n");
}

void WriteFile(std::filesystem::path const& path, std::function<void(fmt::memory_buffer&)> const& addSets)
{
    fmt::memory_buffer text;
    auto const out = std::back_inserter(text);
    fmt::format_to(out,
                   "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Scene>\n  <IFile ID=\"file1\" Label=\"Plant\""
                   " IsRoot=\"1\">\n    <AttributeSet>\n");
    addSets(text);
    fmt::format_to(out, "    </AttributeSet>\n  </IFile>\n</Scene>\n");
    std::ofstream file(path, std::ios::binary);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!file.flush())
        throw std::runtime_error("Cannot write " + path.string());
}

void WriteDistinctView(std::filesystem::path const& path, unsigned count)
{
    WriteFile(path, [&](fmt::memory_buffer& text) { AddMembers(text, "view", count, count); });
}

void WriteRepeatingView(std::filesystem::path const& path, unsigned count)
{
    WriteFile(path, [&](fmt::memory_buffer& text) { AddMembers(text, "view", count, count / kRepeatsPerPath); });
}

void WriteLayer(std::filesystem::path const& path, unsigned count)
{
    WriteFile(path, [&](fmt::memory_buffer& text) { AddLayer(text, count); });
}

void WriteGroups(std::filesystem::path const& path, unsigned count)
{
    WriteFile(path, [&](fmt::memory_buffer& text) { AddGroups(text, count); });
}

// All in the proportion of their full sizes; the count is that of the members of each view.
void WriteWhole(std::filesystem::path const& path, unsigned count)
{
    WriteFile(path,
              [&](fmt::memory_buffer& text)
              {
                  AddMembers(text, "distinct", count, count);
                  AddMembers(text, "view", count, count / kRepeatsPerPath);
                  AddLayer(text, count * (kItems / kMembers));
                  AddGroups(text, count / (kMembers / kGroups));
              });
}

std::string ViewId(unsigned)
{
    return "view";
}

std::string LayerId(unsigned)
{
    return "layer";
}

std::string LastGroupId(unsigned count)
{
    return fmt::format("group{}", count - 1);
}

}  // namespace

std::vector<OrganisationCase> OrganisationCases()
{
    return {
        {"view, distinct paths", &WriteDistinctView, "members", kMembers, &ViewId},
        {"view, repeated paths", &WriteRepeatingView, "members", kMembers, &ViewId},
        {"layer", &WriteLayer, "items", kItems, &LayerId},
        {"groups", &WriteGroups, "groups", kGroups, &LastGroupId},
        {"whole", &WriteWhole, "members", kMembers, &ViewId},
    };
}

}  // namespace KVR::Bench
