#pragma once

#include <map>
#include <string>
#include <tuple>

#include "exchange/export/StepAspects.h"
#include "exchange/export/StepMeasures.h"

class StepDimTol_Datum;
class StepDimTol_DatumReferenceCompartment;
class StepDimTol_DatumSystem;
class StepDimTol_GeometricTolerance;

namespace KVR
{

/// Adds to a model what dimensions, tolerances and datums mean: their types, their values, and what they speak of.
class StepNotes
{
public:
    /// The transfer outlives this.
    explicit StepNotes(StepTransfer& step);

    /// The callouts by their numbers; a reader that goes through the file meets them in the order of its entities.
    std::vector<ShapeDocument::Callout const*> const& InOrder() const noexcept { return m_inOrder; }
    /// Adds a dimension, or a tolerance with the datums that it names, when it speaks of something in the file; or what
    /// a drawing speaks of that means nothing by itself.
    void Add(ShapeDocument::Callout const& callout);
    /// What a callout became, for its drawing; null for one that is no more than drawn.
    opencascade::handle<Standard_Transient> EntityOf(ShapeDocument::Callout const& callout) const;
    /// Whether a callout is only drawn.
    static bool IsPicture(ShapeDocument::Callout const& callout);
    /// The callout whose drawing stands for that of another one: the first one of a datum, or itself.
    ShapeDocument::Callout const& DrawnAs(ShapeDocument::Callout const& callout) const;

private:
    using Callout = ShapeDocument::Callout;
    using Frame = std::vector<Callout const*>;
    struct Datum
    {
        opencascade::handle<StepDimTol_Datum> datum;
        opencascade::handle<StepRepr_ShapeAspect> feature;
        Callout const* first = nullptr;
    };

    opencascade::handle<Standard_Transient> Dimension(Callout const& callout);
    opencascade::handle<Standard_Transient> Tolerance(Callout const& callout, Frame const& frame);
    opencascade::handle<StepDimTol_DatumSystem> SystemOf(Callout const& tolerance, Frame const& frame);
    opencascade::handle<StepDimTol_DatumReferenceCompartment> CompartmentOf(Frame const& datums, TDF_Label const& part);
    Datum const& DatumOf(Callout const& callout, TDF_Label const& part);
    void AddDatum(Datum& made, Callout const& callout, TDF_Label const& part);

    std::vector<Callout const*> m_inOrder;
    /// The datums of tolerances by the ids of these, which stand once in each copy of a component.
    std::map<std::pair<std::string, std::string>, Frame> m_frames;
    StepTransfer& m_step;
    StepAspects m_aspects;
    StepMeasures m_measures;
    std::map<Callout const*, opencascade::handle<Standard_Transient>> m_entities;
    /// By all that tells one datum from another.
    std::map<std::string, Datum> m_datums;
    std::map<Callout const*, Callout const*> m_firsts;
};

}  // namespace KVR
