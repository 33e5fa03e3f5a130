#include "scene/reader/FilterNames.h"

#include <algorithm>
#include <unordered_map>

#include "scene/NearestNames.h"
#include "scene/reader/SceneContent.h"

namespace KVR
{

namespace
{

using Names = std::unordered_set<std::string_view>;

// Tells the ids and the labels of all that a filter can take or leave out, with repeats.
template <class TakeId, class TakeLabel>
void ListObjects(SceneContent const& content, TakeId const& takeId, TakeLabel const& takeLabel)
{
    auto const take = [&](auto const& object)
    {
        takeId(object.id);
        takeLabel(object.label);
    };
    for (SceneComponent const& component : content.components)
    {
        take(component);
        std::for_each(component.placements.begin(), component.placements.end(), take);
        for (SceneGeometry const& geometry : component.geometry)
        {
            take(geometry);
            takeId(geometry.bodyId);
        }
    }
}

// The ids in the layers that `fits` finds by id, label or number; nothing when it finds none.
template <class Fits>
bool AddItems(SceneContent const& content, Fits const& fits, Names& items)
{
    bool isFound = false;
    for (SceneLayer const& layer : content.layers)
        if ((!layer.id.empty() && fits(layer.id)) || (!layer.label.empty() && fits(layer.label)) ||
            fits(std::to_string(layer.number)))
        {
            isFound = true;
            items.insert(layer.items.begin(), layer.items.end());
        }
    return isFound;
}

std::vector<std::string> NearestTo(std::string_view name, SceneContent const& content)
{
    std::string text(name);
    std::erase_if(text, [](char byte) { return byte == '*' || byte == '?'; });
    NearestNames nearest(text);
    auto const add = [&](std::string_view other) { nearest.Add(other); };
    ListObjects(content, add, add);
    for (SceneLayer const& layer : content.layers)
    {
        add(layer.id);
        add(layer.label);
    }
    return nearest.Names();
}

// A name of the list, and what became of it.
struct Wanted
{
    std::string_view name;
    bool isFound = false;
    bool isLayer = false;
    Names items = {};
};

// Finds what names mean, in as many passes over the objects as there are patterns and layers, and one more.
class Finder
{
public:
    Finder(SceneContent const& content, Names& names, Names& items) : m_content(content), m_names(names), m_items(items)
    {
    }

    std::vector<Wanted> Find(std::vector<std::string> const& names)
    {
        std::vector<Wanted> wanted;
        std::unordered_map<std::string_view, std::size_t> placeOf;
        for (std::string_view const name : names)
            if (placeOf.emplace(name, wanted.size()).second)
                wanted.push_back({name});
        ListNames(
            [&](std::string_view other)
            {
                if (auto const place = placeOf.find(other); place != placeOf.end())
                    Take(wanted[place->second], other);
            });
        for (Wanted& entry : wanted)
        {
            entry.isLayer = AddItems(
                m_content, [&](std::string_view other) { return other == entry.name; }, entry.items);
            if (!entry.isFound && !entry.isLayer && entry.name.find_first_of("*?") != std::string_view::npos)
                FindPattern(entry);
            if (!entry.items.empty())
                TakeItems(entry);
        }
        return wanted;
    }

private:
    template <class Tell>
    void ListNames(Tell const& tell)
    {
        auto const take = [&](std::string_view name)
        {
            if (!name.empty())
                tell(name);
        };
        ListObjects(m_content, take, take);
    }

    void Take(Wanted& entry, std::string_view name)
    {
        entry.isFound = true;
        m_names.insert(name);
    }

    void FindPattern(Wanted& entry)
    {
        auto const fits = [&](std::string_view other) { return SceneFilter::Fits(other, entry.name); };
        ListNames(
            [&](std::string_view other)
            {
                if (fits(other))
                    Take(entry, other);
            });
        entry.isLayer = AddItems(m_content, fits, entry.items);
    }

    void TakeItems(Wanted& entry)
    {
        auto const take = [&](std::string_view id)
        {
            if (id.empty() || !entry.items.contains(id))
                return;
            entry.isFound = true;
            m_items.insert(id);
        };
        ListObjects(m_content, take, [](std::string_view) {});
    }

    SceneContent const& m_content;
    Names& m_names;
    Names& m_items;
};

}  // namespace

FilterNames::FilterNames(SceneContent const& content, std::vector<std::string> const& names,
                         std::vector<SceneFilterError::Unmatched>& unmatched)
{
    if (names.empty())
        return;
    for (Wanted const& entry : Finder(content, m_names, m_items).Find(names))
        if (!entry.isFound)
            unmatched.push_back({std::string(entry.name), entry.isLayer,
                                 entry.isLayer ? std::vector<std::string>() : NearestTo(entry.name, content)});
}

}  // namespace KVR
