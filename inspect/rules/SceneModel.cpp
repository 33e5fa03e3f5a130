#include "inspect/rules/SceneModel.h"

#include "framework/api/Exception.h"
#include "framework/api/IProducer.h"
#include "framework/api/TypesafeId.h"
#include "inspect/SceneCheck.h"
#include "scene/Scene.h"

namespace KVR
{

std::optional<Scene> SceneModel(SceneCheck const& check)
{
    try
    {
        return std::optional<Scene>(std::in_place, check.Producer(), check.Producer().RootObjectId().Id());
    }
    catch (Exception const&)
    {
        // Without a root, of which another rule tells.
        return {};
    }
}

}  // namespace KVR
