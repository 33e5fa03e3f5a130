#include <string>

#include "exchange/export/BrepFile.h"
#include "exchange/export/ExportTask.h"
#include "exchange/export/Formats.h"
#include "exchange/export/ShapeDocument.h"
#include "exchange/export/ShapeDocumentBuilder.h"
#include "exchange/export/StepFile.h"
#include "exchange/run/NewFile.h"
#include "exchange/run/ThreadBlocks.h"

namespace KVR
{

namespace
{

// What would be done about a scene of meshes alone.
void TellOfMeshFaces(ExportTask& task, bool hasTriangles)
{
    bool hasMesh = false;
    for (SceneComponent const& component : task.scene.Components())
        for (SceneGeometry const& geometry : component.geometry)
        {
            if (geometry.kind != GeometryKind::kMesh && geometry.kind != GeometryKind::kOther)
                return;
            hasMesh = hasMesh || geometry.kind == GeometryKind::kMesh;
        }
    if (hasMesh && !task.options.meshFaces)
        task.remarks.push_back(std::string("the scene has meshes and no bodies, so that nothing of its shape is there; "
                                           "--mesh-faces writes them as ") +
                               (hasTriangles ? "tessellated geometry" : "flat faces"));
}

template <class Writer>
void WriteShapes(ExportTask& task, bool hasTriangles, Writer write)
{
    ShapeDocument document = ShapeDocumentBuilder(task, hasTriangles).Build();
    TellOfMeshFaces(task, hasTriangles);
    NewFile file(task.path);
    write(std::move(document), file.Out());
    file.Finish();
}

}  // namespace

void ExportStep(ExportTask& task)
{
    ThreadBlocks const blocks;
    WriteShapes(task, true,
                [&](ShapeDocument document, Output& out) { WriteStepFile(std::move(document), out, task.tell); });
}

void ExportBrep(ExportTask& task)
{
    WriteShapes(task, false, &WriteBrepFile);
}

}  // namespace KVR
