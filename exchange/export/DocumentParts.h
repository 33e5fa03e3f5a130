#pragma once

#include <TDF_Label.hxx>
#include <gp_Mat.hxx>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "exchange/export/DocumentMeasures.h"
#include "exchange/export/PartShapes.h"
#include "exchange/export/ShapeDocument.h"

class XCAFDoc_ColorTool;
class XCAFDoc_ShapeTool;

namespace KVR
{

/// Adds the geometry of components to a document as parts, with names, colours and validation properties.
class DocumentParts
{
public:
    /// Meshes without a body are the document's tessellations where the format has triangles, else shells of faces or
    /// nothing, as the options have it.
    DocumentParts(ExportTask& task, ShapeDocument& document, bool hasTriangles);

    /// A new part of the component's geometry after a change in its coordinates.
    TDF_Label Add(SceneComponent const& component, gp_Mat const& change);
    /// Gives a part or an assembly the validation properties and the material that its custom properties tell, and
    /// notes what else is said of it.
    void AddProperties(SceneComponent const& component, TDF_Label const& label, bool withMeasures = true);
    /// Measures the solids of all parts.
    void AddMeasures() { m_measures.Finish(m_document); }
    /// Puts parts, bodies and faces into the layers that name them. What STEP has no place for in a layer is counted.
    void AddLayers();

    /// What an id in the references of an annotation stands for: the shape in the part, or else the first one there is.
    /// Nothing for what is no shape.
    std::optional<ShapeDocument::Target> TargetOf(std::string const& id, TDF_Label const& part) const;

    /// Colours a label, and what is below it: its faces, and its edges that no face has. A style without a colour has
    /// no effect.
    void SetColor(TDF_Label const& label, SceneStyle const* style, TopoDS_Shape const& shape) const;

private:
    class SubShapes;

    void Style(SceneComponent const& component, TDF_Label const& part, std::vector<PartItem> const& items,
               bool isWhole);
    /// What an id in a layer stands for: a label, or a point by its place in the document's list of bodies.
    struct Member
    {
        TDF_Label label;
        std::size_t point = 0;
    };

    void AddTessellations(SceneComponent const& component, TDF_Label const& part, gp_Mat const& change);
    void Note(std::string const& id, Member const& member);
    void NoteTarget(std::string const& id, TDF_Label const& part, TopoDS_Shape const& shape);

    ExportTask& m_task;
    bool m_tessellates;
    ShapeDocument& m_document;
    opencascade::handle<XCAFDoc_ShapeTool> m_shapes;
    opencascade::handle<XCAFDoc_ColorTool> m_colors;
    /// What layers name, with all that it is.
    std::unordered_map<std::string, std::vector<Member>> m_layerItems;
    /// What annotations speak of, with all that it is.
    std::unordered_map<std::string, std::vector<ShapeDocument::Target>> m_targets;
    PartShapes m_partShapes;
    DocumentMeasures m_measures;
};

}  // namespace KVR
