#pragma once

#include <STEPCAFControl_Writer.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopoDS_Shape.hxx>
#include <string>
#include <vector>

#include "host/export/ShapeDocument.h"

class StepData_StepModel;
class StepRepr_Representation;
class StepRepr_RepresentationContext;
class StepRepr_RepresentationItem;
class StepVisual_StyledItem;

namespace KVR
{

/// Adds to the entities that Open CASCADE's writer made of a document what it does not write by itself.
class StepFinish
{
public:
    /// The writer has transferred the document, and outlives this.
    StepFinish(STEPCAFControl_Writer& writer, ShapeDocument const& document);

    /// Gives bodies their names.
    void WriteNames();
    /// Hides bodies within parts that are shown.
    void WriteHiddenBodies();
    /// Gives the colours of occurrences their transparency.
    void WriteTransparency();

private:
    template <class Entity>
    std::vector<opencascade::handle<Entity>> EntitiesOf() const;
    opencascade::handle<StepRepr_RepresentationItem> ItemOf(TopoDS_Shape const& shape) const;

    STEPCAFControl_Writer& m_writer;
    ShapeDocument const& m_document;
    opencascade::handle<StepData_StepModel> m_model;
};

}  // namespace KVR
