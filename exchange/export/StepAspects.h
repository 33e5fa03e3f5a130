#pragma once

#include <StepRepr_ProductDefinitionShape.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepRepr_ShapeAspect.hxx>
#include <map>
#include <vector>

#include "exchange/export/StepTransfer.h"

namespace KVR
{

/// Shape aspects: what annotations of a STEP file speak of.
class StepAspects
{
public:
    using Targets = std::vector<ShapeDocument::Target>;

    /// The transfer outlives this.
    explicit StepAspects(StepTransfer& step) : m_step(step) {}

    /// The aspect of one target, or of several together; null when none is in the file. Annotations may share it.
    opencascade::handle<StepRepr_ShapeAspect> Of(Targets const& targets) { return Make(targets, true); }
    /// An aspect that no one else has.
    opencascade::handle<StepRepr_ShapeAspect> OwnOf(Targets const& targets) { return Make(targets, false); }
    /// An aspect of nothing in particular of a part.
    opencascade::handle<StepRepr_ShapeAspect> Empty(TDF_Label const& part);
    /// Makes an aspect of the part that owns the first target, or else of the part, one of all targets.
    void Apply(opencascade::handle<StepRepr_ShapeAspect> const& aspect, Targets const& targets);

    /// What the shape of a part is in the file; null for one that is not there.
    opencascade::handle<StepRepr_ProductDefinitionShape> ShapeOf(TDF_Label const& part) const;
    /// What the aspects of a part are measured in; null for one that is not in the file.
    opencascade::handle<StepRepr_RepresentationContext> ContextOf(TDF_Label const& part) const;
    /// The item of a target in the file; null for one that is not there.
    opencascade::handle<StepRepr_RepresentationItem> ItemOf(ShapeDocument::Target const& target) const;

private:
    opencascade::handle<StepRepr_ShapeAspect> Make(Targets const& targets, bool mayShare);
    opencascade::handle<StepRepr_ShapeAspect> Single(ShapeDocument::Target const& target, bool mayShare);

    StepTransfer& m_step;
    std::map<Standard_Transient const*, opencascade::handle<StepRepr_ShapeAspect>> m_singles;
    std::map<std::vector<Standard_Transient const*>, opencascade::handle<StepRepr_ShapeAspect>> m_composites;
};

}  // namespace KVR
