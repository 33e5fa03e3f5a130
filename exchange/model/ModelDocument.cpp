#include "exchange/model/ModelDocument.h"

#include <TDataStd_Name.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <filesystem>

#include "exchange/model/CadReaders.h"
#include "exchange/model/ModelError.h"
#include "framework/api/IOUtil.h"
#include "framework/api/LengthUnits.h"
#include "framework/kernel/KernelMessages.h"
#include "framework/kernel/MemoryWatch.h"
#include "framework/kernel/store/StoreShapes.h"

namespace KVR
{

namespace
{

// A document of one shape.
void AddShape(ModelDocument& model, TopoDS_Shape const& shape, std::string const& path)
{
    auto const shapes = XCAFDoc_DocumentTool::ShapeTool(model.document->Main());
    TDF_Label const label = shapes->AddShape(shape, false);
    TDataStd_Name::Set(label, TCollection_ExtendedString(std::filesystem::path(path).stem().c_str(), true));
}

void ReadBrep(ModelDocument& model, std::string const& path)
{
    TopoDS_Shape shape;
    if (!ReadShapeFile(FilePtr(UTF8String(path), "rb"), shape))
        throw ModelError("it is cut short or damaged");
    if (shape.IsNull())
        throw ModelError("it holds no shape");
    AddShape(model, shape, path);
}

}  // namespace

ModelDocument ModelDocument::Read(std::string const& path, ModelFormat format, ModelReadOptions const& options)
{
    SilenceKernel();
    XCAFDoc_ShapeTool::SetAutoNaming(false);
    // Files that a model refers to are found beside it only by an absolute path.
    std::string const absolute = std::filesystem::absolute(path).string();
    ModelDocument model;
    model.document = new TDocStd_Document("BinXCAF");
    model.unit = options.unit;
    bool const isTransferred = format == ModelFormat::kStep || format == ModelFormat::kIges;
    Handle(StageProgress) const indicator =
        new StageProgress(isTransferred ? "transferring" : "reading", options.progress);
    Message_ProgressRange const progress = indicator->Start();
    MemoryWatch const watch;
    try
    {
        switch (format)
        {
            case ModelFormat::kStep:
                ReadStep(model, absolute, options, progress);
                break;
            case ModelFormat::kIges:
                ReadIges(model, absolute, progress);
                break;
            case ModelFormat::kBrep:
                ReadBrep(model, absolute);
                break;
            default:
                throw ModelError("its format has meshes alone");
        }
    }
    catch (Standard_Failure const& failure)
    {
        watch.Check(failure);
        throw ModelError("its reader failed: " + KernelFailureText(failure));
    }
    return model;
}

}  // namespace KVR
