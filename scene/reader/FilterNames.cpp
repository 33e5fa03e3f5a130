#include "scene/reader/FilterNames.h"

#include <algorithm>

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

// The distinct names of a scene: those of its objects and layers.
struct KnownNames
{
    explicit KnownNames(SceneContent const& content)
    {
        auto const take = [this](std::string_view name)
        {
            if (!name.empty())
                names.insert(name);
        };
        ListObjects(
            content,
            [&](std::string_view id)
            {
                take(id);
                if (!id.empty())
                    ids.insert(id);
            },
            take);
    }

    Names names;
    Names ids;
};

bool IsPattern(std::string_view name)
{
    return name.find_first_of("*?") != std::string_view::npos;
}

// The ids in the layers that `fits` finds by id, label or number; nothing when it finds none.
template <class Fits>
bool AddItems(SceneContent const& content, Fits const& fits, Names& items)
{
    bool isFound = false;
    for (SceneLayer const& layer : content.layers)
        if (fits(layer.id) || (!layer.label.empty() && fits(layer.label)) || fits(std::to_string(layer.number)))
        {
            isFound = true;
            items.insert(layer.items.begin(), layer.items.end());
        }
    return isFound;
}

std::vector<std::string> NearestTo(std::string const& name, SceneContent const& content, KnownNames const& known)
{
    std::string text = name;
    std::erase_if(text, [](char byte) { return byte == '*' || byte == '?'; });
    NearestNames nearest(text);
    for (std::string_view const other : known.names)
        nearest.Add(other);
    for (SceneLayer const& layer : content.layers)
    {
        nearest.Add(layer.id);
        nearest.Add(layer.label);
    }
    return nearest.Names();
}

}  // namespace

FilterNames::FilterNames(SceneContent const& content, std::vector<std::string> const& names,
                         std::vector<SceneFilterError::Unmatched>& unmatched)
{
    if (names.empty())
        return;
    KnownNames const known(content);
    for (std::string const& name : names)
    {
        Names items;
        bool isLayer = AddItems(
            content, [&](std::string_view other) { return other == name; }, items);
        bool isFound = known.names.contains(name);
        if (isFound)
            m_names.insert(name);
        else if (!isLayer && IsPattern(name))
        {
            auto const fits = [&](std::string_view other) { return SceneFilter::Fits(other, name); };
            isLayer = AddItems(content, fits, items);
            for (std::string_view const other : known.names)
                if (fits(other))
                {
                    isFound = true;
                    m_names.insert(other);
                }
        }
        for (std::string_view const item : items)
            if (known.ids.contains(item))
            {
                isFound = true;
                m_items.insert(item);
            }
        if (!isFound)
            unmatched.push_back(
                {name, isLayer, isLayer ? std::vector<std::string>() : NearestTo(name, content, known)});
    }
}

}  // namespace KVR
