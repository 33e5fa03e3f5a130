#pragma once

#include <STEPCAFControl_Writer.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopoDS_Shape.hxx>
#include <string>
#include <unordered_map>
#include <vector>

#include "exchange/export/ShapeDocument.h"

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

    /// Makes an item of each point; the writer makes one of all points of a part. To be called before all others.
    void SeparatePoints();
    /// Puts points into their layers.
    void WriteLayersOfPoints();
    /// Puts layers into the document's order. To be called after WriteLayersOfPoints.
    void OrderLayers();
    /// Gives bodies their names.
    void WriteNames();
    /// Hides bodies within parts that are shown.
    void WriteHiddenBodies();
    /// Gives the colours of occurrences their transparency, and takes colours away that the scene does not have.
    void WriteLooks();

private:
    void TakeColorsOfParts();
    void SeparatePoints(std::vector<std::size_t> const& points);
    opencascade::handle<StepRepr_RepresentationItem> ItemOf(std::size_t body) const;

    STEPCAFControl_Writer& m_writer;
    ShapeDocument const& m_document;
    opencascade::handle<StepData_StepModel> m_model;
    /// Of points, by their places in the list of bodies.
    std::unordered_map<std::size_t, opencascade::handle<StepRepr_RepresentationItem>> m_points;
};

}  // namespace KVR
