#pragma once

#include <Interface_InterfaceModel.hxx>
#include <StepData_StepModel.hxx>
#include <vector>

namespace KVR
{

/// The entities of a kind in a model, in its order.
template <class Entity>
std::vector<opencascade::handle<Entity>> StepEntitiesOf(opencascade::handle<StepData_StepModel> const& model)
{
    std::vector<opencascade::handle<Entity>> found;
    for (int i = 1; i <= model->NbEntities(); ++i)
    {
        auto const entity = opencascade::handle<Entity>::DownCast(model->Value(i));
        if (!entity.IsNull())
            found.push_back(entity);
    }
    return found;
}

}  // namespace KVR
