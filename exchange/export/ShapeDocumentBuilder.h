#pragma once

#include <TDF_Label.hxx>
#include <gp_Mat.hxx>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "exchange/export/DocumentParts.h"
#include "exchange/export/DocumentVariant.h"
#include "exchange/export/ShapeDocument.h"
#include "scene/OccurrenceState.h"

class XCAFDoc_ShapeTool;

namespace KVR
{

class FileProperties;

/// Makes a document of a scene.
class ShapeDocumentBuilder
{
public:
    /// Of a format that has triangles, or none.
    ShapeDocumentBuilder(ExportTask& task, bool hasTriangles);

    /// The document, once; its unit is that of the scene, or millimetres where STEP has no such unit. Throws
    /// std::runtime_error when the scene has more occurrences than a STEP writer can go through.
    ShapeDocument Build();

private:
    void CheckSize() const;
    void AddRoots();
    void AddFileProperties(FileProperties const* properties);
    /// The component as it stands after a change of its coordinates, where the state holds: of that, the places alone
    /// make a difference.
    DocumentVariant const* VariantOf(std::size_t component, gp_Mat const& change, OccurrenceState const& state);
    void FillAssembly(DocumentVariant& variant, gp_Mat const& change, OccurrenceState const& state);
    DocumentVariant::Place Placed(DocumentVariant const& assembly, ScenePlacement const& placement,
                                  gp_Mat const& change, OccurrenceState const& state);
    bool Moves(SceneOverride const& entry);

    ExportTask& m_task;
    bool m_hasTriangles;
    Scene const& m_scene;
    ShapeDocument m_document;
    opencascade::handle<XCAFDoc_ShapeTool> m_shapes;
    std::unique_ptr<DocumentParts> m_parts;
    std::map<std::string, std::unique_ptr<DocumentVariant>> m_variants;
    std::vector<DocumentVariant const*> m_inOrder;
    /// How many variants there are of a component.
    std::unordered_map<std::size_t, std::size_t> m_copies;
    std::unordered_map<SceneOverride const*, bool> m_moving;
};

}  // namespace KVR
