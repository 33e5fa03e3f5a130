#include "exchange/export/StepFile.h"

#include <APIHeaderSection_MakeHeader.hxx>
#include <Interface_HArray1OfHAsciiString.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <StepData_Protocol.hxx>
#include <StepData_StepModel.hxx>
#include <StepData_StepWriter.hxx>
#include <TCollection_HAsciiString.hxx>
#include <XSControl_WorkSession.hxx>
#include <ostream>
#include <stdexcept>

#include "exchange/export/ShapeDocument.h"
#include "exchange/export/StepDrawings.h"
#include "exchange/export/StepFinish.h"
#include "exchange/export/StepText.h"
#include "exchange/export/StepUnit.h"
#include "output/Output.h"

namespace KVR
{

namespace
{

using opencascade::handle;

// The number that Open CASCADE gives the schema AP242.
constexpr int kAp242 = 5;

handle<Interface_HArray1OfHAsciiString> OneText(std::string const& text)
{
    return new Interface_HArray1OfHAsciiString(1, 1, new TCollection_HAsciiString(text.c_str()));
}

void WriteHeader(ShapeDocument const& document, handle<StepData_StepModel> const& model)
{
    APIHeaderSection_MakeHeader header(model);
    header.SetName(new TCollection_HAsciiString(document.title.c_str()));
    header.SetAuthor(OneText(document.author));
    header.SetOrganization(OneText(document.organization));
    header.SetOriginatingSystem(new TCollection_HAsciiString("kvr_xml_producer"));
    header.SetAuthorisation(new TCollection_HAsciiString(document.authorisation.c_str()));
    header.SetDescription(OneText(document.title));
    header.Apply(model);
}

}  // namespace

void WriteStepFile(ShapeDocument& document, Output& out)
{
    // What Open CASCADE tells of its work is nobody's question here.
    Message::DefaultMessenger()->ChangePrinters().Clear();
    STEPCAFControl_Controller::Init();
    Interface_Static::SetIVal("write.step.schema", kAp242);
    Interface_Static::SetIVal("write.step.assembly", 2);
    Interface_Static::SetIVal("write.step.vertex.mode", 0);
    Interface_Static::SetIVal("write.stepcaf.subshapes.name", 0);
    // The uncertainty that the file states is the greatest tolerance: a reader repairs what is wider than it.
    Interface_Static::SetIVal("write.precision.mode", 1);
    // The document states its unit; the file has the same, so that no number changes.
    Interface_Static::SetCVal("write.step.unit", StepUnitOf(document.unit));
    Interface_Static::SetCVal("xstep.cascade.unit", StepUnitOf(document.unit));

    STEPCAFControl_Writer writer;
    writer.SetColorMode(Standard_True);
    writer.SetNameMode(Standard_True);
    writer.SetLayerMode(Standard_True);
    writer.SetPropsMode(Standard_True);
    writer.SetSHUOMode(Standard_True);
    writer.SetDimTolMode(Standard_True);
    writer.SetMaterialMode(Standard_True);
    if (!writer.Transfer(document.document, STEPControl_AsIs))
        throw std::runtime_error("Open CASCADE finds nothing in the scene that it can write as STEP");
    handle<StepData_StepModel> const model = handle<StepData_StepModel>::DownCast(writer.ChangeWriter().WS()->Model());
    StepFinish finish(writer, document);
    finish.SeparatePoints();
    finish.WriteNames();
    finish.WriteLayersOfPoints();
    finish.OrderLayers();
    finish.WriteHiddenBodies();
    finish.WriteLooks();
    StepDrawings drawings(writer, document);
    drawings.WriteCallouts();
    drawings.WriteViews();
    WriteHeader(document, model);

    StepText text(out);
    std::ostream stream(&text);
    stream.exceptions(std::ios::badbit);
    StepData_StepWriter lines(model);
    lines.SendModel(handle<StepData_Protocol>::DownCast(model->Protocol()));
    if (!lines.Print(stream))
        throw std::runtime_error("Open CASCADE could not write the STEP file");
    text.Finish();
    out.Flush();
}

}  // namespace KVR
