#pragma once

#include <Interface_EntityIterator.hxx>
#include <StepData_StepModel.hxx>
#include <cstddef>
#include <vector>

namespace KVR
{

/// What an entity of a model names as it is. Open CASCADE's graph asks each entity of a model the same when it is made.
Interface_EntityIterator NamedBy(opencascade::handle<Standard_Transient> const& entity,
                                 opencascade::handle<StepData_StepModel> const& model);

/// What the entities of a model name, all asked once; entities are their numbers in the model, from 1.
class StepReferences
{
public:
    explicit StepReferences(opencascade::handle<StepData_StepModel> model);

    /// To be called for an entity that names others since then.
    void SetChanged(opencascade::handle<Standard_Transient> const& entity);
    /// By number, with 0 for nobody: whether each entity is named, by whatever way, from those on that nobody named in
    /// the beginning, or is one of them.
    std::vector<bool> NamedFromRoots() const;

private:
    opencascade::handle<StepData_StepModel> m_model;
    /// The numbers that each entity names, behind one another, and where those of each begin.
    std::vector<int> m_named;
    std::vector<std::size_t> m_begins;
    std::vector<bool> m_isChanged;
};

}  // namespace KVR
