#pragma once

#include <STEPCAFControl_Writer.hxx>
#include <StepData_StepModel.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <Transfer_FinderProcess.hxx>
#include <XSControl_WorkSession.hxx>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "exchange/export/ShapeDocument.h"

namespace KVR
{

/// A document, and the entities that Open CASCADE's writer makes of it: what the phases of a STEP export hand on to one
/// another.
struct StepTransfer
{
    using Item = opencascade::handle<StepRepr_RepresentationItem>;

    /// Makes the entities. Throws std::runtime_error when there is nothing to make them of.
    StepTransfer(ShapeDocument content, TellStage const& tell);
    StepTransfer(StepTransfer const&) = delete;
    StepTransfer& operator=(StepTransfer const&) = delete;

    opencascade::handle<XSControl_WorkSession> Session() { return writer.ChangeWriter().WS(); }
    opencascade::handle<Transfer_FinderProcess> Process();
    /// The item of a body, by its place in the document's list; null for one that is not in the file.
    Item ItemOf(std::size_t body);
    /// The item of a shape; null for one that is not in the file.
    Item ItemOf(TopoDS_Shape const& shape);
    /// What defines the shape of a part or an assembly of the document; null for another label.
    opencascade::handle<StepShape_ShapeDefinitionRepresentation> DefinitionOf(TDF_Label const& label);

    /// The edges of bodies whose curves lie apart from their surfaces.
    std::unordered_set<Standard_Transient const*> LooseEdges();

    ShapeDocument document;
    STEPCAFControl_Writer writer;
    opencascade::handle<StepData_StepModel> model;
    /// Of points with an item of their own, by their places in the list of bodies.
    std::unordered_map<std::size_t, Item> points;
    /// The drawings of callouts by their ids, those of one datum under the ids of all that name it.
    std::unordered_map<std::string, std::vector<Item>> drawnById;
};

}  // namespace KVR
