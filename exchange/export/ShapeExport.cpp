#include <stdexcept>

#include "exchange/export/BrepFile.h"
#include "exchange/export/ExportTask.h"
#include "exchange/export/Formats.h"
#include "exchange/export/ShapeDocument.h"
#include "exchange/export/ShapeDocumentBuilder.h"
#include "exchange/export/StepFile.h"
#include "exchange/run/KernelFailure.h"
#include "exchange/run/NewFile.h"

namespace KVR
{

namespace
{

template <class Writer>
void WriteShapes(ExportTask& task, bool hasTriangles, Writer write)
{
    try
    {
        ShapeDocument document = ShapeDocumentBuilder(task, hasTriangles).Build();
        NewFile file(task.path);
        write(std::move(document), file.Out());
        file.Finish();
    }
    catch (Standard_Failure const& failure)
    {
        throw std::runtime_error("Open CASCADE refuses it: " + KernelFailureText(failure));
    }
}

}  // namespace

void ExportStep(ExportTask& task)
{
    WriteShapes(task, true, &WriteStepFile);
}

void ExportBrep(ExportTask& task)
{
    WriteShapes(task, false, &WriteBrepFile);
}

}  // namespace KVR
