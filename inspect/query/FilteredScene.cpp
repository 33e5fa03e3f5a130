#include "inspect/query/FilteredScene.h"

#include <algorithm>

#include "inspect/query/Query.h"
#include "scene/SceneSelection.h"

namespace KVR
{

namespace
{

// A list of a filter by what its texts are.
struct Wanted
{
    explicit Wanted(std::vector<std::string> const& texts)
    {
        for (std::string const& text : texts)
            if (Query::IsExpression(text))
                expressions.emplace_back(text, Query(text));
            else
                names.push_back(text);
    }

    std::vector<std::size_t> Find(Scene const& scene) const
    {
        std::vector<std::size_t> all;
        for (auto const& [text, query] : expressions)
        {
            std::vector<std::size_t> const found = query.Find(scene);
            if (found.empty())
                throw QueryError("nothing in it fits the expression " + text, 0);
            std::size_t const before = all.size();
            all.insert(all.end(), found.begin(), found.end());
            std::inplace_merge(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(before), all.end());
        }
        all.erase(std::unique(all.begin(), all.end()), all.end());
        return all;
    }

    std::vector<std::string> names;
    std::vector<std::pair<std::string, Query>> expressions;
};

}  // namespace

Scene FilteredScene(IProducer& producer, UTF8String const& rootId, SceneFilter const& filter)
{
    Wanted const only(filter.only);
    Wanted const hide(filter.hide);
    if (only.expressions.empty() && hide.expressions.empty())
        return Scene(producer, rootId, filter);
    SceneFilter first = filter;
    first.only = {};
    first.hide = hide.names;
    Scene scene(producer, rootId, first);
    if (scene.Root() != kNoIndex)
        scene.Reduce({only.Find(scene), only.names, hide.Find(scene)});
    return scene;
}

}  // namespace KVR
