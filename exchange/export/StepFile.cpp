#include "exchange/export/StepFile.h"

#include <StepData_Protocol.hxx>
#include <StepData_StepWriter.hxx>
#include <TCollection_HAsciiString.hxx>
#include <ostream>
#include <string_view>

#include "exchange/export/StepPhases.h"
#include "exchange/export/StepTessellation.h"
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
    // The end of the data and of the file.
    constexpr int kEnd = 2;
    int const count = lines.NbLines();
    for (int i = 1; i <= count; ++i)
    {
        if (i > count - kEnd && !m_step->document.tessellations.empty())
        {
            text.Finish();
            WriteTessellations(*m_step, static_cast<std::size_t>(m_step->model->NbEntities()), out);
            m_step->document.tessellations.clear();
        }
        std::string_view const line = lines.Line(i)->ToCString();
        // Blanks around the sign behind a number are a tenth of some files.
        std::size_t const sign = line.starts_with('#') ? line.find(" = ") : std::string_view::npos;
        if (sign == std::string_view::npos)
            stream << line << '\n';
        else
            stream << line.substr(0, sign) << '=' << line.substr(sign + 3) << '\n';
    }
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
