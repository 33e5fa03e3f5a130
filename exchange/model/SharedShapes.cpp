#include "exchange/model/SharedShapes.h"

#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace KVR
{

std::vector<ShapeGroup> SharedShapes(std::vector<TopoDS_Shape> const& shapes)
{
    std::vector<std::size_t> leaders(shapes.size());
    std::iota(leaders.begin(), leaders.end(), 0);
    auto const leaderOf = [&](std::size_t i)
    {
        while (leaders[i] != i)
            i = leaders[i] = leaders[leaders[i]];
        return i;
    };
    std::vector<int> faces(shapes.size());
    std::unordered_map<TopoDS_TShape const*, std::size_t> owners;
    for (std::size_t i = 0; i < shapes.size(); ++i)
    {
        TopTools_IndexedMapOfShape parts;
        if (!shapes[i].IsNull())
            TopExp::MapShapes(shapes[i], parts);
        for (int place = 1; place <= parts.Extent(); ++place)
        {
            faces[i] += parts(place).ShapeType() == TopAbs_FACE ? 1 : 0;
            std::size_t const owner = leaderOf(owners.emplace(parts(place).TShape().get(), i).first->second);
            leaders[std::max(owner, leaderOf(i))] = std::min(owner, leaderOf(i));
        }
    }
    std::vector<ShapeGroup> groups(shapes.size());
    for (std::size_t i = 0; i < shapes.size(); ++i)
        if (!shapes[i].IsNull())
        {
            ShapeGroup& group = groups[leaderOf(i)];
            group.members.push_back(i);
            group.faces += faces[i];
        }
    std::erase_if(groups, [](ShapeGroup const& group) { return group.members.empty(); });
    return groups;
}

}  // namespace KVR
