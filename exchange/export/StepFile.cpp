#include "exchange/export/StepFile.h"

#include <StepData_Protocol.hxx>
#include <StepData_StepWriter.hxx>
#include <ostream>
#include <stdexcept>

#include "exchange/export/StepPhases.h"
#include "exchange/export/StepText.h"
#include "output/Output.h"

namespace KVR
{

TransferredModel::TransferredModel(ShapeDocument document, TellStage const& tell)
    : StepPhase(std::make_unique<StepTransfer>(std::move(document), tell))
{
}

void FinishedModel::Write(Output& out) const
{
    StepText text(out);
    std::ostream stream(&text);
    stream.exceptions(std::ios::badbit);
    StepData_StepWriter lines(m_step->model);
    lines.SendModel(opencascade::handle<StepData_Protocol>::DownCast(m_step->model->Protocol()));
    if (!lines.Print(stream))
        throw std::runtime_error("Open CASCADE could not write the STEP file");
    text.Finish();
    out.Flush();
}

void WriteStepFile(ShapeDocument document, Output& out, TellStage const& tell)
{
    TransferredModel transferred(std::move(document), tell);
    if (tell)
        tell("writing", 0.0);
    SeparatedModel separated(std::move(transferred));
    LayeredModel layered(std::move(separated));
    DressedModel dressed(std::move(layered));
    AnnotatedModel annotated(std::move(dressed));
    FinishedModel(std::move(annotated)).Write(out);
}

}  // namespace KVR
