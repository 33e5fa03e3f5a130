#include "exchange/model/ModelDocument.h"

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <TDataStd_Name.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <filesystem>
#include <fstream>

#include "exchange/model/CadReaders.h"
#include "exchange/model/ModelError.h"
#include "framework/api/LengthUnits.h"
#include "framework/kernel/KernelMessages.h"

namespace KVR
{

namespace
{

// Open CASCADE makes the shapes of a STEP file in the first part of what it measures.
constexpr double kDenseOfStep = 0.2;

// A document of one shape.
void AddShape(ModelDocument& model, TopoDS_Shape const& shape, std::string const& path)
{
    auto const shapes = XCAFDoc_DocumentTool::ShapeTool(model.document->Main());
    TDF_Label const label = shapes->AddShape(shape, false);
    TDataStd_Name::Set(label, TCollection_ExtendedString(std::filesystem::path(path).stem().c_str(), true));
}

// Both forms may start with a line end; the word behind it tells them apart.
bool IsBinaryBrep(std::istream& file)
{
    std::string word;
    file >> word;
    file.seekg(0);
    return word == "Open";
}

void ReadBrep(ModelDocument& model, std::string const& path)
{
    // A stream that throws: the reader of texts would loop for ever at the end of one that does not.
    std::ifstream file(path, std::ios::binary);
    file.exceptions(std::ios::badbit | std::ios::failbit | std::ios::eofbit);
    TopoDS_Shape shape;
    try
    {
        if (IsBinaryBrep(file))
            BinTools::Read(shape, file);
        else
            BRepTools::Read(shape, file, BRep_Builder());
    }
    catch (std::ios_base::failure const&)
    {
        throw ModelError("it is cut short or damaged");
    }
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
        new StageProgress(isTransferred ? "transferring" : "reading", options.progress,
                          format == ModelFormat::kStep ? kDenseOfStep : 1.0);
    Message_ProgressRange const progress = indicator->Start();
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
        throw ModelError("its reader failed: " + KernelFailureText(failure));
    }
    return model;
}

}  // namespace KVR
