#include "exchange/export/GltfPlace.h"

#include <utility>

#include "exchange/export/GltfMaterials.h"

namespace KVR
{

using tinygltf::Value;

GltfPlace GltfPlace::Of(Matrix const& transform)
{
    GltfPlace place;
    place.isSolid = IsSolid(transform);
    place.outer = transform;
    if (place.isSolid && !HasRightAngles(transform))
    {
        TwoTransforms const two = TwoTransforms::Of(transform);
        place.outer = two.outer;
        place.inner = two.inner;
    }
    return place;
}

bool GltfPlace::AddTo(tinygltf::Node& node, tinygltf::Model& model, int* innerNode) const
{
    if (!isSolid)
        return false;
    if (outer != kIdentity)
        node.matrix = ColumnsOf(outer);
    if (innerNode)
        *innerNode = -1;
    if (!inner)
        return true;
    tinygltf::Node below;
    below.matrix = ColumnsOf(*inner);
    below.mesh = std::exchange(node.mesh, -1);
    int const index = static_cast<int>(model.nodes.size());
    model.nodes.push_back(std::move(below));
    node.children.push_back(index);
    if (innerNode)
        *innerNode = index;
    return true;
}

std::vector<double> ColumnsOf(Matrix const& matrix)
{
    std::vector<double> columns;
    for (std::size_t column = 0; column < 4; ++column)
        for (std::size_t row = 0; row < 4; ++row)
            columns.push_back(matrix[4 * row + column]);
    return columns;
}

void HideNode(tinygltf::Node& node, tinygltf::Model& model)
{
    constexpr char kVisibility[] = "KHR_node_visibility";
    Value::Object hidden;
    hidden["visible"] = Value(false);
    node.extensions[kVisibility] = Value(hidden);
    UseExtension(model, kVisibility);
    Value::Object extras = node.extras.IsObject() ? node.extras.Get<Value::Object>() : Value::Object();
    extras["visible"] = Value(false);
    node.extras = Value(extras);
}

}  // namespace KVR
