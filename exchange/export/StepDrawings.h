#pragma once

#include <STEPCAFControl_Writer.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepVisual_DraughtingCallout.hxx>
#include <StepVisual_HArray1OfPresentationStyleAssignment.hxx>
#include <unordered_map>

#include "exchange/export/ShapeDocument.h"
#include "exchange/export/StepNotes.h"

class StepData_StepModel;

namespace KVR
{

/// Adds saved views and annotation callouts to the entities that Open CASCADE's writer made of a document.
class StepDrawings
{
public:
    /// The writer has transferred the document, and outlives this.
    StepDrawings(STEPCAFControl_Writer& writer, ShapeDocument& document);

    /// A draughting model for each view: its camera, and what the view names, or else the whole product. To be called
    /// after WriteCallouts.
    void WriteViews();
    /// What dimensions, tolerances and datums mean; and a draughting model for each part with callouts that are drawn
    /// or stand in a plane: their curves, or else their text, associated with what they mean or with the part. A text
    /// is the description of the association.
    void WriteCallouts();

private:
    struct Drawing
    {
        opencascade::handle<StepVisual_DraughtingCallout> callout;
        /// The callout, or the plane that it stands in.
        opencascade::handle<StepRepr_RepresentationItem> item;
    };

    void AddMembers(std::vector<opencascade::handle<StepRepr_RepresentationItem>>& items,
                    ShapeDocument::View const& view);
    void Draw(ShapeDocument::Callout const& callout, bool isInView);
    void Associate(StepNotes const& notes);

    STEPCAFControl_Writer& m_writer;
    ShapeDocument& m_document;
    opencascade::handle<StepData_StepModel> m_model;
    opencascade::handle<StepVisual_HArray1OfPresentationStyleAssignment> m_styles;
    std::unordered_map<ShapeDocument::Callout const*, Drawing> m_drawn;
    /// The drawings of callouts by their ids, those of one datum under the ids of all that name it.
    std::unordered_map<std::string, std::vector<opencascade::handle<StepRepr_RepresentationItem>>> m_drawnById;
};

}  // namespace KVR
