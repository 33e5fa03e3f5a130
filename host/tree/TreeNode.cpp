#include "host/tree/TreeNode.h"

#include "scene/SceneComponent.h"

namespace KVR
{

std::string_view KindOf(SceneComponent const& component) noexcept
{
    switch (component.kind)
    {
        case SceneComponent::Kind::kFile:
            return "IFile";
        case SceneComponent::Kind::kAssembly:
            return "IAssembly";
        case SceneComponent::Kind::kPart:
            return "IPart";
    }
    return {};
}

}  // namespace KVR
