#include "exchange/export/StepOrder.h"

#include <Interface_EntityIterator.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepVisual_MechanicalDesignGeometricPresentationRepresentation.hxx>
#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "exchange/export/StepModelEntities.h"
#include "exchange/export/StepReferences.h"

namespace KVR
{

namespace
{

using opencascade::handle;
using Presentation = StepVisual_MechanicalDesignGeometricPresentationRepresentation;

bool IsStyle(handle<Standard_Transient> const& entity)
{
    return std::string_view(entity->DynamicType()->Name()).starts_with("StepVisual_");
}

// The styles below a presentation, each behind what first names it.
void AddStyles(handle<Standard_Transient> const& root, handle<StepData_StepModel> const& model,
               std::vector<handle<Standard_Transient>>& order, std::unordered_set<Standard_Transient const*>& known)
{
    std::vector<handle<Standard_Transient>> waiting{root};
    while (!waiting.empty())
    {
        handle<Standard_Transient> const entity = waiting.back();
        waiting.pop_back();
        if (!IsStyle(entity) || !known.insert(entity.get()).second)
            continue;
        order.push_back(entity);
        std::size_t const first = waiting.size();
        for (Interface_EntityIterator shared = NamedBy(entity, model); shared.More(); shared.Next())
            waiting.push_back(shared.Value());
        std::reverse(waiting.begin() + static_cast<std::ptrdiff_t>(first), waiting.end());
    }
}

}  // namespace

void SortPresentations(handle<StepData_StepModel> const& model)
{
    std::vector<handle<Presentation>> presentations = StepEntitiesOf<Presentation>(model);
    auto const numberOf = [&](handle<Presentation> const& presentation)
    { return model->Number(presentation->ContextOfItems()); };
    std::stable_sort(presentations.begin(), presentations.end(),
                     [&](auto const& left, auto const& right) { return numberOf(left) < numberOf(right); });
    std::vector<handle<Standard_Transient>> styles;
    std::unordered_set<Standard_Transient const*> known;
    for (handle<Presentation> const& presentation : presentations)
        AddStyles(presentation, model, styles, known);
    std::vector<handle<Standard_Transient>> order;
    for (int i = 1; i <= model->NbEntities(); ++i)
        if (known.count(model->Value(i).get()) == 0)
            order.push_back(model->Value(i));
    order.insert(order.end(), styles.begin(), styles.end());
    model->ClearEntities();
    for (handle<Standard_Transient> const& entity : order)
        model->AddEntity(entity);
}

}  // namespace KVR
