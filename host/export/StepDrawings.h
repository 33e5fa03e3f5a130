#pragma once

#include <STEPCAFControl_Writer.hxx>

#include "host/export/ShapeDocument.h"

class StepData_StepModel;

namespace KVR
{

/// Adds saved views and annotation callouts to the entities that Open CASCADE's writer made of a document.
class StepDrawings
{
public:
    /// The writer has transferred the document, and outlives this.
    StepDrawings(STEPCAFControl_Writer& writer, ShapeDocument& document);

    /// A draughting model for each view: its camera, and the whole product.
    void WriteViews();
    /// A draughting model for each part with callouts: their curves, in their planes, associated with the part. A text
    /// is the description of the association.
    void WriteCallouts();

private:
    STEPCAFControl_Writer& m_writer;
    ShapeDocument& m_document;
    opencascade::handle<StepData_StepModel> m_model;
};

}  // namespace KVR
