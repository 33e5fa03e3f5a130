#include "bench/OrganisationGenerator.h"

#include <functional>
#include <string>
#include <utility>

#include "authoring/SceneWriter.h"
#include "framework/api/UTF16String.h"

namespace KVR::Bench
{

namespace
{

constexpr unsigned kMembers = 100'000;
constexpr unsigned kItems = 1'000'000;
constexpr unsigned kGroups = 10'000;
constexpr unsigned kItemsPerGroup = 10;
constexpr unsigned kRepeatsPerPath = 10;

using namespace Authoring;

UTF8String Id(char const* kind, unsigned number)
{
    return UTF8String(kind + std::to_string(number));
}

void AddMembers(AttributeSetRecord& sets, char const* id, unsigned members, unsigned paths)
{
    ViewRecord view;
    view.id = id;
    view.label = "Exploded";
    for (unsigned i = 0; i < members; ++i)
    {
        ViewRecord::Member member;
        member.path = {Id("asm", i % paths % 100), Id("inst", i % paths), Id("part", i % 500)};
        member.isVisible = i % 8 != 0;
        // Of four members one is moved, and one has a style.
        if (i % 4 == 1)
        {
            member.transform.emplace();
            member.transform->SetElement(0, 3, i * 0.25);
            member.transform->SetElement(1, 3, i);
            member.transform->SetElement(2, 3, 0.5);
        }
        if (i % 4 == 2)
            member.styles = {Id("style", i % 50)};
        view.members.push_back(std::move(member));
    }
    sets.views.push_back(std::move(view));
}

void AddLayer(AttributeSetRecord& sets, unsigned items)
{
    LayerRecord layer;
    layer.id = "layer";
    layer.label = "Everything";
    layer.number = 1;
    for (unsigned i = 0; i < items; ++i)
        layer.itemIds.push_back(Id("item", i));
    sets.layers.push_back(std::move(layer));
}

void AddGroups(AttributeSetRecord& sets, unsigned groups)
{
    for (unsigned i = 0; i < groups; ++i)
    {
        GroupRecord group;
        group.id = Id("group", i);
        group.label = Id("Group ", i);
        for (unsigned item = 0; item < kItemsPerGroup; ++item)
            group.itemIds.push_back(Id("item", i * kItemsPerGroup + item));
        sets.groups.push_back(std::move(group));
    }
}

void WriteFile(std::filesystem::path const& path, std::function<void(AttributeSetRecord&)> const& addSets)
{
    AttributeSetRecord sets;
    addSets(sets);
    SceneWriter scene(UTF16String(UTF8String(path.string())));
    FileRecord file;
    file.id = "file1";
    file.label = "Plant";
    scene.BeginFile(file);
    scene.AttributeSet(sets);
    scene.EndFile();
    scene.Finish();
}

void WriteDistinctView(std::filesystem::path const& path, unsigned count)
{
    WriteFile(path, [&](AttributeSetRecord& sets) { AddMembers(sets, "view", count, count); });
}

void WriteRepeatingView(std::filesystem::path const& path, unsigned count)
{
    WriteFile(path, [&](AttributeSetRecord& sets) { AddMembers(sets, "view", count, count / kRepeatsPerPath); });
}

void WriteLayer(std::filesystem::path const& path, unsigned count)
{
    WriteFile(path, [&](AttributeSetRecord& sets) { AddLayer(sets, count); });
}

void WriteGroups(std::filesystem::path const& path, unsigned count)
{
    WriteFile(path, [&](AttributeSetRecord& sets) { AddGroups(sets, count); });
}

// All in the proportion of their full sizes; the count is that of the members of each view.
void WriteWhole(std::filesystem::path const& path, unsigned count)
{
    WriteFile(path,
              [&](AttributeSetRecord& sets)
              {
                  AddMembers(sets, "distinct", count, count);
                  AddMembers(sets, "view", count, count / kRepeatsPerPath);
                  AddLayer(sets, count * (kItems / kMembers));
                  AddGroups(sets, count / (kMembers / kGroups));
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
    return "group" + std::to_string(count - 1);
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
