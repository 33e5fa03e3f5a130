#include "exchange/export/StepReferences.h"

#include <Interface_GTool.hxx>
#include <Interface_GeneralModule.hxx>
#include <utility>

namespace KVR
{

using opencascade::handle;

Interface_EntityIterator NamedBy(handle<Standard_Transient> const& entity, handle<StepData_StepModel> const& model)
{
    Interface_EntityIterator named;
    handle<Interface_GeneralModule> module;
    int number = 0;
    if (model->GTool()->Select(entity, module, number))
        module->FillShared(model, number, entity, named);
    return named;
}

StepReferences::StepReferences(handle<StepData_StepModel> model) : m_model(std::move(model))
{
    auto const count = static_cast<std::size_t>(m_model->NbEntities());
    m_begins.reserve(count + 2);
    m_begins.push_back(0);
    m_isChanged.resize(count + 1);
    for (std::size_t i = 1; i <= count; ++i)
    {
        m_begins.push_back(m_named.size());
        for (Interface_EntityIterator named = NamedBy(m_model->Value(static_cast<int>(i)), m_model); named.More();
             named.Next())
            if (int const number = m_model->Number(named.Value()); number > 0)
                m_named.push_back(number);
    }
    m_begins.push_back(m_named.size());
}

void StepReferences::SetChanged(handle<Standard_Transient> const& entity)
{
    m_isChanged[static_cast<std::size_t>(m_model->Number(entity))] = true;
}

std::vector<bool> StepReferences::NamedFromRoots() const
{
    std::vector<bool> hasName(m_isChanged.size());
    for (int const number : m_named)
        hasName[static_cast<std::size_t>(number)] = true;
    std::vector<bool> isReached(m_isChanged.size());
    std::vector<std::size_t> waiting;
    auto const reach = [&](std::size_t number)
    {
        if (number == 0 || isReached[number])
            return;
        isReached[number] = true;
        waiting.push_back(number);
    };
    for (std::size_t root = 1; root < hasName.size(); ++root)
        if (!hasName[root])
            reach(root);
    while (!waiting.empty())
    {
        std::size_t const entity = waiting.back();
        waiting.pop_back();
        if (m_isChanged[entity])
            for (Interface_EntityIterator named = NamedBy(m_model->Value(static_cast<int>(entity)), m_model);
                 named.More(); named.Next())
                reach(static_cast<std::size_t>(m_model->Number(named.Value())));
        else
            for (std::size_t i = m_begins[entity]; i < m_begins[entity + 1]; ++i)
                reach(static_cast<std::size_t>(m_named[i]));
    }
    return isReached;
}

}  // namespace KVR
