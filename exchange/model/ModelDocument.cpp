#include "exchange/model/ModelDocument.h"

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BinTools.hxx>
#include <Poly_Triangulation.hxx>
#include <RWGltf_CafReader.hxx>
#include <RWObj_CafReader.hxx>
#include <RWStl.hxx>
#include <TDataStd_Name.hxx>
#include <TopoDS_Face.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <filesystem>
#include <fstream>

#include "exchange/model/CadReaders.h"
#include "exchange/model/ModelError.h"
#include "exchange/model/PlyReader.h"
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

void AddTriangulation(ModelDocument& model, Handle(Poly_Triangulation) const& triangulation, std::string const& path)
{
    if (triangulation.IsNull() || triangulation->NbTriangles() == 0)
        throw ModelError("it holds no triangles");
    TopoDS_Face face;
    BRep_Builder().MakeFace(face, triangulation);
    AddShape(model, face, path);
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

void ReadStl(ModelDocument& model, std::string const& path, Message_ProgressRange const& progress)
{
    AddTriangulation(model, RWStl::ReadFile(path.c_str(), progress), path);
}

template <class Reader>
void ReadMeshModel(ModelDocument& model, Reader& reader, std::string const& path, Message_ProgressRange const& progress)
{
    reader.SetDocument(model.document);
    reader.SetSystemLengthUnit(MetresOf(model.unit));
    reader.SetSystemCoordinateSystem(RWMesh_CoordinateSystem_Zup);
    if (!reader.Perform(path.c_str(), progress))
        throw ModelError("it is damaged, or holds no meshes");
}

// Compressed meshes arrive empty, and the reader does not say so.
void RefuseCompression(std::string const& path)
{
    constexpr std::size_t kMostJson = std::size_t{64} * 1024 * 1024;
    std::ifstream file(path, std::ios::binary);
    std::string text(std::min<std::uintmax_t>(kMostJson, std::filesystem::file_size(path)), '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    auto const required = text.find("\"extensionsRequired\"");
    if (required == std::string::npos)
        return;
    std::string const list = text.substr(required, text.find(']', required) - required);
    for (char const* const extension : {"KHR_draco_mesh_compression", "EXT_meshopt_compression"})
        if (list.find(extension) != std::string::npos)
            throw ModelError(std::string("its meshes are compressed with ") + extension + ", which cannot be read");
}

void ReadGltf(ModelDocument& model, std::string const& path, Message_ProgressRange const& progress)
{
    RefuseCompression(path);
    model.unit = kUnitType_Meter;
    model.isUnitStated = true;
    RWGltf_CafReader reader;
    reader.SetFileLengthUnit(1.0);
    reader.SetMeshNameAsFallback(true);
    ReadMeshModel(model, reader, path, progress);
}

void ReadObj(ModelDocument& model, std::string const& path, Message_ProgressRange const& progress)
{
    RWObj_CafReader reader;
    reader.SetFileLengthUnit(MetresOf(model.unit));
    reader.SetFileCoordinateSystem(RWMesh_CoordinateSystem_Zup);
    ReadMeshModel(model, reader, path, progress);
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
                ReadStep(model, absolute, options.withAnnotations, progress);
                break;
            case ModelFormat::kIges:
                ReadIges(model, absolute, progress);
                break;
            case ModelFormat::kBrep:
                ReadBrep(model, absolute);
                break;
            case ModelFormat::kGltf:
                ReadGltf(model, absolute, progress);
                break;
            case ModelFormat::kStl:
                ReadStl(model, absolute, progress);
                break;
            case ModelFormat::kObj:
                ReadObj(model, absolute, progress);
                break;
            case ModelFormat::kPly:
                AddTriangulation(model, ReadPly(absolute), absolute);
                break;
        }
    }
    catch (Standard_Failure const& failure)
    {
        throw ModelError("its reader failed: " + KernelFailureText(failure));
    }
    return model;
}

}  // namespace KVR
