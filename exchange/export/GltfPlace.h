#pragma once

#include <tiny_gltf.h>

#include <optional>
#include <vector>

#include "scene/Transform.h"

namespace KVR
{

/// Where a node of a glTF document stands. A node has no shear: what has one stands in two nodes.
struct GltfPlace
{
    static GltfPlace Of(Matrix const& transform);

    /// Gives a node its matrix, unless it is the identity. What is below a shear, the node's mesh with it, goes to a
    /// node in it that is added to the document: `inner`, else -1. False, with nothing done, for a transform that
    /// leaves nothing of what it places.
    bool AddTo(tinygltf::Node& node, tinygltf::Model& model, int* inner = nullptr) const;

    bool isSolid = true;
    Matrix outer = kIdentity;
    std::optional<Matrix> inner;
};

/// glTF writes matrices column by column.
std::vector<double> ColumnsOf(Matrix const& matrix);

/// Marks a node as hidden, with all below it.
void HideNode(tinygltf::Node& node, tinygltf::Model& model);

}  // namespace KVR
