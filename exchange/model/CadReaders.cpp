#include "exchange/model/CadReaders.h"
#include "framework/api/LengthUnits.h"

#include <malloc.h>

#include <APIHeaderSection_MakeHeader.hxx>
#include <IGESCAFControl_Reader.hxx>
#include <IGESData_GlobalSection.hxx>
#include <IGESData_IGESModel.hxx>
#include <Interface_Static.hxx>
#include <Message_ProgressScope.hxx>
#include <STEPCAFControl_ExternFile.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <STEPConstruct_Tool.hxx>
#include <STEPConstruct_UnitContext.hxx>
#include <StepBasic_ProductDefinition.hxx>
#include <StepData_StepModel.hxx>
#include <StepGeom_Axis2Placement3d.hxx>
#include <StepGeom_CartesianPoint.hxx>
#include <StepGeom_GeomRepContextAndGlobUnitAssCtxAndGlobUncertaintyAssCtx.hxx>
#include <StepGeom_GeometricRepresentationContextAndGlobalUnitAssignedContext.hxx>
#include <StepRepr_GlobalUnitAssignedContext.hxx>
#include <StepRepr_NextAssemblyUsageOccurrence.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepShape_EdgeCurve.hxx>
#include <StepShape_Face.hxx>
#include <StepShape_ShellBasedSurfaceModel.hxx>
#include <StepShape_SolidModel.hxx>
#include <StepVisual_CameraModelD3.hxx>
#include <StepVisual_DraughtingCallout.hxx>
#include <StepVisual_DraughtingModel.hxx>
#include <TColStd_SequenceOfAsciiString.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TopoDS_Shape.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <UnitsMethods.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>
#include <algorithm>
#include <cmath>
#include <future>
#include <memory>

#include "exchange/model/ModelDocument.h"
#include "exchange/model/ModelError.h"
#include "exchange/model/SolidCheck.h"
#include "exchange/model/StepEntityReading.h"
#include "exchange/model/StepHealing.h"
#include "exchange/run/Beside.h"

namespace KVR
{

namespace
{

// What a STEP file calls its units of length, without prefix and in capitals.
constexpr std::pair<std::string_view, UnitTypeEnum> kStepUnits[] = {
    {"METRE", kUnitType_Meter},
    {"METER", kUnitType_Meter},
    {"MILLIMETRE", kUnitType_Millimeter},
    {"MILLIMETER", kUnitType_Millimeter},
    {"CENTIMETRE", kUnitType_Centimeter},
    {"CENTIMETER", kUnitType_Centimeter},
    {"DECIMETRE", kUnitType_Decimeter},
    {"KILOMETRE", kUnitType_Kilometer},
    {"MICROMETRE", kUnitType_Micrometer},
    {"INCH", kUnitType_Inch},
    {"INCHES", kUnitType_Inch},
    {"FOOT", kUnitType_Foot},
    {"FEET", kUnitType_Foot},
    {"YARD", kUnitType_Yard},
    {"MILE", kUnitType_Mile},
    {"MIL", kUnitType_Mil},
};

// Open CASCADE tells the factor of a unit in millimetres.
constexpr double kMetresPerFactor = 1e-3;

std::string Capitals(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    std::erase_if(text, [](char c) { return c == ' ' || c == '\'' || c == '-' || c == '_'; });
    return text;
}

// The unit of the document is what Open CASCADE brings lengths to, which is the model's own: nothing is scaled.
void SetDocumentUnit(ModelDocument& model, UnitTypeEnum unit)
{
    model.unit = unit;
    double const metres = MetresOf(unit);
    XCAFDoc_DocumentTool::SetLengthUnit(model.document, metres);
    UnitsMethods::SetCasCadeLengthUnit(metres, UnitsMethods_LengthUnit_Meter);
}

std::string TextOf(Handle(TCollection_HAsciiString) const& text)
{
    return text.IsNull() ? std::string() : std::string(text->ToCString());
}

void AddHeader(ModelDocument& model, char const* name, std::string const& text)
{
    if (!text.empty())
        model.header.emplace_back(name, text);
}

// The factor of the first context of geometry, for units that are not told by a name of their own.
UnitTypeEnum UnitOfContexts(Handle(StepData_StepModel) const& step)
{
    for (int number = 1; number <= step->NbEntities(); ++number)
    {
        Handle(Standard_Transient) const entity = step->Value(number);
        Handle(StepRepr_GlobalUnitAssignedContext) context;
        if (auto const plain =
                Handle(StepGeom_GeometricRepresentationContextAndGlobalUnitAssignedContext)::DownCast(entity);
            !plain.IsNull())
            context = plain->GlobalUnitAssignedContext();
        else if (auto const uncertain =
                     Handle(StepGeom_GeomRepContextAndGlobUnitAssCtxAndGlobUncertaintyAssCtx)::DownCast(entity);
                 !uncertain.IsNull())
            context = uncertain->GlobalUnitAssignedContext();
        if (context.IsNull())
            continue;
        STEPConstruct_UnitContext units;
        units.ComputeFactors(context);
        if (units.LengthDone())
            return UnitOfLength(units.LengthFactor() * kMetresPerFactor);
    }
    return kUnitType_Unknown;
}

void ReadStepUnit(ModelDocument& model, STEPControl_Reader& reader, Handle(StepData_StepModel) const& step)
{
    TColStd_SequenceOfAsciiString lengths;
    TColStd_SequenceOfAsciiString angles;
    TColStd_SequenceOfAsciiString solidAngles;
    reader.FileUnits(lengths, angles, solidAngles);
    UnitTypeEnum unit = kUnitType_Unknown;
    for (TCollection_AsciiString const& length : lengths)
        for (auto const& [known, type] : kStepUnits)
            if (unit == kUnitType_Unknown && known == Capitals(length.ToCString()))
                unit = type;
    if (unit == kUnitType_Unknown)
        unit = UnitOfContexts(step);
    model.isUnitStated = unit != kUnitType_Unknown;
    SetDocumentUnit(model, model.isUnitStated ? unit : model.unit);
}

void ReadStepHeader(ModelDocument& model, Handle(StepData_StepModel) const& step)
{
    APIHeaderSection_MakeHeader const header(step);
    if (!header.FnValue().IsNull())
    {
        if (header.NbAuthor() > 0)
            AddHeader(model, "Author", TextOf(header.AuthorValue(1)));
        if (header.NbOrganization() > 0)
            AddHeader(model, "Organization", TextOf(header.OrganizationValue(1)));
        AddHeader(model, "SendingSystem", TextOf(header.OriginatingSystem()));
        AddHeader(model, "Preprocessor", TextOf(header.PreprocessorVersion()));
        AddHeader(model, "Authorisation", TextOf(header.Authorisation()));
        model.creationTime = TextOf(header.TimeStamp());
    }
}

void ReadEye(ModelDocument& model, StepVisual_CameraModelD3 const& camera)
{
    Handle(StepGeom_Axis2Placement3d) const axes = camera.ViewReferenceSystem();
    if (axes.IsNull() || axes->Location().IsNull() || axes->Location()->NbCoordinates() != 3)
        return;
    Handle(StepGeom_CartesianPoint) const eye = axes->Location();
    // A file's unit is the document's.
    model.eyes.emplace(TextOf(camera.Name()),
                       std::array{eye->CoordinatesValue(1), eye->CoordinatesValue(2), eye->CoordinatesValue(3)});
}

void ReadDrawings(ModelDocument& model, StepVisual_DraughtingModel const& view)
{
    std::string name;
    std::vector<std::string> drawings;
    for (int i = 1; i <= view.NbItems(); ++i)
    {
        Handle(StepRepr_RepresentationItem) const item = view.ItemsValue(i);
        if (auto const camera = Handle(StepVisual_CameraModelD3)::DownCast(item); !camera.IsNull())
            name = TextOf(camera->Name());
        else if (!item.IsNull() && item->IsKind(STANDARD_TYPE(StepVisual_DraughtingCallout)))
            drawings.push_back(TextOf(item->Name()));
    }
    if (!name.empty())
        model.drawings.emplace(name, std::move(drawings));
}

// The names of bodies, the eyes of views and their drawings, and the numbers of the entities of faces and edges, by
// what Open CASCADE made of them.
void ReadEntityIds(ModelDocument& model, Handle(XSControl_WorkSession) const& session)
{
    Handle(Transfer_TransientProcess) const process = session->TransferReader()->TransientProcess();
    Handle(StepData_StepModel) const step = Handle(StepData_StepModel)::DownCast(session->Model());
    SolidCheck check(MetresOf(model.unit));
    for (int number = 1; number <= step->NbEntities(); ++number)
    {
        Handle(Standard_Transient) const entity = step->Value(number);
        if (auto const camera = Handle(StepVisual_CameraModelD3)::DownCast(entity); !camera.IsNull())
            ReadEye(model, *camera);
        if (auto const view = Handle(StepVisual_DraughtingModel)::DownCast(entity); !view.IsNull())
            ReadDrawings(model, *view);
        bool const isBody = entity->IsKind(STANDARD_TYPE(StepShape_SolidModel)) ||
                            entity->IsKind(STANDARD_TYPE(StepShape_ShellBasedSurfaceModel));
        if (!isBody && !entity->IsKind(STANDARD_TYPE(StepShape_Face)) &&
            !entity->IsKind(STANDARD_TYPE(StepShape_EdgeCurve)))
            continue;
        TopoDS_Shape const shape = TransferBRep::ShapeResult(process, entity);
        if (shape.IsNull())
        {
            if (!entity->IsKind(STANDARD_TYPE(StepShape_EdgeCurve)))
                model.step->missing.insert(static_cast<Part21File::Number>(step->IdentLabel(entity)));
            continue;
        }
        if (!isBody)
        {
            model.entityIds.emplace(shape.TShape().get(), TextOf(step->StringLabel(entity)));
            continue;
        }
        std::string const name = TextOf(Handle(StepRepr_RepresentationItem)::DownCast(entity)->Name());
        if (!name.empty() && name != "NONE")
            model.bodyNames.emplace(shape.TShape().get(), name);
        auto const known = static_cast<Part21File::Number>(step->IdentLabel(entity));
        if (auto const said = model.step->products.solids.find(known); said != model.step->products.solids.end())
            check.Check(name, said->second, shape);
    }
    if (std::string remark = check.Remark(); !remark.empty())
        model.remarks.push_back(std::move(remark));
}

// What became of the products and usages of the file in the document.
void ReadProducts(ModelDocument& model, STEPCAFControl_Reader& reader)
{
    Handle(XSControl_WorkSession) const session = reader.Reader().WS();
    Handle(Transfer_TransientProcess) const process = session->TransferReader()->TransientProcess();
    auto const shapes = XCAFDoc_DocumentTool::ShapeTool(model.document->Main());
    STEPConstruct_Tool const tool(session);
    Handle(StepData_StepModel) const step = Handle(StepData_StepModel)::DownCast(session->Model());
    StepProductTable const& said = model.step->products;
    for (int number = 1; number <= step->NbEntities(); ++number)
    {
        Handle(Standard_Transient) const entity = step->Value(number);
        bool const isUsage = entity->IsKind(STANDARD_TYPE(StepRepr_NextAssemblyUsageOccurrence));
        if (!isUsage && !entity->IsKind(STANDARD_TYPE(StepBasic_ProductDefinition)))
            continue;
        auto const known = static_cast<Part21File::Number>(step->IdentLabel(entity));
        TDF_Label label;
        if (isUsage)
            label = STEPCAFControl_Reader::FindInstance(Handle(StepRepr_NextAssemblyUsageOccurrence)::DownCast(entity),
                                                        shapes, tool, reader.GetShapeLabelMap());
        else if (TopoDS_Shape const shape = TransferBRep::ShapeResult(process, entity); !shape.IsNull())
        {
            // An assembly's shape is another one in the document than it was made of.
            TDF_Label const* const made = reader.GetShapeLabelMap().Seek(shape);
            label = made ? *made : shapes->FindShape(shape.Located(TopLoc_Location()));
        }
        auto const product = said.products.find(known);
        auto const usage = said.usages.find(known);
        if (label.IsNull())
            model.step->missing.insert(known);
        else if (isUsage && usage != said.usages.end())
            model.usages.Bind(label, usage->second);
        else if (!isUsage && product != said.products.end() && !model.products.IsBound(label))
            model.products.Bind(label, product->second);
    }
}

void ReadExternalFiles(ModelDocument& model, STEPCAFControl_Reader const& reader)
{
    for (NCollection_DataMap<TCollection_AsciiString, Handle(STEPCAFControl_ExternFile)>::Iterator file(
             reader.ExternFiles());
         file.More(); file.Next())
        if (file.Value()->GetLoadStatus() != IFSelect_RetDone || file.Value()->GetLabel().IsNull())
            model.losses.AddItem("external files that were not found", file.Key().ToCString());
}

std::string IgesTime(std::string const& date)
{
    // YYYYMMDD.HHMMSS, or with a year of two digits.
    std::string digits;
    std::copy_if(date.begin(), date.end(), std::back_inserter(digits), [](char c) { return c >= '0' && c <= '9'; });
    if (digits.size() == 12)
        digits.insert(0, digits[0] >= '7' ? "19" : "20");
    if (digits.size() != 14)
        return {};
    return digits.substr(0, 4) + '-' + digits.substr(4, 2) + '-' + digits.substr(6, 2) + 'T' + digits.substr(8, 2) +
           ':' + digits.substr(10, 2) + ':' + digits.substr(12, 2);
}

using StepContentToBe = std::shared_future<std::shared_ptr<StepContent>>;

// A reader that has read the file, whose unit and header the model has then.
std::unique_ptr<STEPCAFControl_Reader> ReaderOf(ModelDocument& model, std::string const& path,
                                                ModelReadOptions const& options, StepContentToBe const& content)
{
    auto reader = std::make_unique<STEPCAFControl_Reader>();
    reader->SetColorMode(true);
    reader->SetNameMode(true);
    reader->SetLayerMode(true);
    reader->SetPropsMode(true);
    reader->SetMatMode(true);
    reader->SetSHUOMode(true);
    reader->SetGDTMode(options.withAnnotations);
    reader->SetViewMode(options.withAnnotations);
    if (!ReadStepEntities(*reader, path, options.progress))
        ReadRepairedStep(model, *reader, *content.get(), path, options.isLenient);
    Handle(StepData_StepModel) const step = Handle(StepData_StepModel)::DownCast(reader->Reader().WS()->Model());
    if (step.IsNull() || step->NbEntities() == 0)
        throw ModelError("it is a STEP file without content");
    ReadStepUnit(model, reader->ChangeReader(), step);
    model.header.clear();
    ReadStepHeader(model, step);
    if (reader->NbRootsForTransfer() == 0)
        throw ModelError("it holds no product with a shape");
    ScaleQualifiedValues(model, step);
    return reader;
}

}  // namespace

void ReadStep(ModelDocument& model, std::string const& path, ModelReadOptions const& options,
              Message_ProgressRange const& progress)
{
    // Of the work, in hundredths.
    constexpr double kBodies = 95;
    constexpr double kDocument = 5;
    // While Open CASCADE reads, the file is read beside it.
    StepContentToBe const content =
        std::async(kBesideIfPossible, [&] { return std::make_shared<StepContent>(path); }).share();
    Message_ProgressScope scope(progress, nullptr, kBodies + kDocument);
    auto reader = ReaderOf(model, path, options, content);
    // As the reader would set it at the start of its transfer.
    double unit = 1.0;
    XCAFDoc_DocumentTool::GetLengthUnit(model.document, unit, UnitsMethods_LengthUnit_Millimeter);
    Handle(StepData_StepModel)::DownCast(reader->Reader().WS()->Model())->SetLocalLengthUnit(unit);
    if (!TransferInParallel(reader->ChangeReader(), scope.Next(kBodies)))
    {
        reader.reset();
        reader = ReaderOf(model, path, options, content);
    }
    if (!reader->Transfer(model.document, scope.Next(kDocument)))
        throw ModelError("its content cannot be made a document");
    if (!model.step)
        model.step = content.get();
    model.step->hasAnnotations = options.withAnnotations;
    if (options.withAnnotations)
        model.step->tolerances = StepTolerances::Of(model.step->file, MetresOf(model.unit));
    ReadEntityIds(model, reader->Reader().WS());
    ReadProducts(model, *reader);
    ReadExternalFiles(model, *reader);
    // Of half the size that the process has by then: the system gets it back before bodies are meshed.
    model.release = std::async(kBesideIfPossible,
                               [reader = std::move(reader)]() mutable
                               {
                                   reader.reset();
                                   malloc_trim(0);
                               });
}

void ReadIges(ModelDocument& model, std::string const& path, Message_ProgressRange const& progress)
{
    IGESCAFControl_Reader reader;
    reader.SetColorMode(true);
    reader.SetNameMode(true);
    reader.SetLayerMode(true);
    if (reader.ReadFile(path.c_str()) != IFSelect_RetDone)
        throw ModelError("it is no complete IGES file");
    Handle(IGESData_IGESModel) const iges = reader.IGESModel();
    if (iges.IsNull() || iges->NbEntities() == 0)
        throw ModelError("it is an IGES file without content");
    IGESData_GlobalSection const& global = iges->GlobalSection();
    UnitTypeEnum const unit = UnitOfLength(global.UnitValue() * kMetresPerFactor);
    model.isUnitStated = unit != kUnitType_Unknown;
    SetDocumentUnit(model, model.isUnitStated ? unit : kUnitType_Millimeter);
    AddHeader(model, "Author", TextOf(global.AuthorName()));
    AddHeader(model, "Organization", TextOf(global.CompanyName()));
    AddHeader(model, "SendingSystem", TextOf(global.SystemId()));
    model.creationTime = IgesTime(TextOf(global.Date()));
    if (!reader.Transfer(model.document, progress))
        throw ModelError("its content cannot be made a document");
}

}  // namespace KVR
