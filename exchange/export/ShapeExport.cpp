#include "exchange/export/BrepFile.h"
#include "exchange/export/Export.h"
#include "exchange/export/Formats.h"
#include "exchange/export/ShapeDocument.h"
#include "exchange/export/ShapeDocumentBuilder.h"
#include "exchange/export/StepFile.h"
#include "exchange/run/NewFile.h"

namespace KVR
{

namespace
{

template <class Writer>
void WriteShapes(ExportTask& task, Writer write)
{
    ShapeDocument document = ShapeDocumentBuilder(task).Build();
    NewFile file(task.path);
    write(std::move(document), file.Out());
    file.Finish();
}

}  // namespace

void ExportStep(ExportTask& task)
{
    WriteShapes(task, [&](ShapeDocument document, Output& out) { WriteStepFile(std::move(document), out, task.tell); });
}

void ExportBrep(ExportTask& task)
{
    WriteShapes(task, &WriteBrepFile);
}

}  // namespace KVR
