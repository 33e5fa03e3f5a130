#pragma once

#include <TDF_LabelSequence.hxx>
#include <string>
#include <unordered_set>
#include <vector>

#include "exchange/conventions/AnnotationDetails.h"
#include "exchange/model/ModelDocument.h"

namespace KVR
{

/// What a STEP file says of the dimensions, tolerances and datums of the document that was made of it.
class NoteFacts
{
public:
    /// The model outlives this. One that is no STEP file has no facts.
    explicit NoteFacts(ModelDocument const& model);

    /// The entity of a dimension or tolerance: the first in the file that is no other one's, and has the name and the
    /// type (of a tolerance) and, when the file says what it speaks of, one of the shapes in common. Null for none.
    StepTolerance const* Take(bool isDimension, std::string const& name, std::string const& type,
                              TDF_LabelSequence const& shapes);
    /// What the frame of a tolerance says of a datum in it; null for one that it does not name.
    static StepDatumReference const* FrameOf(StepTolerance const* tolerance, AnnotationDetails const& datum);
    /// The target of a datum, by its letter, number and type; null for none.
    StepDatumTarget const* TakeTarget(AnnotationDetails const& datum);
    /// The entities of what was found.
    std::unordered_set<Part21File::Number> const& Taken() const noexcept { return m_taken; }

    /// What the entity of a dimension or tolerance says, in the details.
    static void Add(AnnotationDetails& details, StepTolerance const& tolerance);

private:
    /// 2 for shapes in common, 1 where nothing is known of them, 0 for others.
    int Match(StepTolerance const& tolerance, std::unordered_set<Part21File::Number> const& items) const;
    std::unordered_set<Part21File::Number> ItemsOf(TDF_LabelSequence const& shapes) const;

    ModelDocument const& m_model;
    std::unordered_set<Part21File::Number> m_taken;
};

/// Counts the comments of a document, which the scene has no place for.
void CountComments(Handle(TDocStd_Document) const& document, Losses& losses);

}  // namespace KVR
