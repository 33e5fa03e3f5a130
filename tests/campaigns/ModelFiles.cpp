#include "tests/campaigns/ModelFiles.h"

#include <BRepAlgoAPI_Cut.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepTools.hxx>
#include <BinTools.hxx>
#include <IGESControl_Writer.hxx>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "exchange/ConvertModel.h"
#include "tests/campaigns/Campaign.h"
#include "tests/support/TempFolder.h"

namespace KVR::Campaigns
{

namespace
{

TopoDS_Shape Solid()
{
    TopoDS_Shape const box = BRepPrimAPI_MakeBox(4.0, 3.0, 2.0).Shape();
    return BRepAlgoAPI_Cut(
               box, BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(2.0, 1.5, -1.0), gp_Dir(0.0, 0.0, 1.0)), 0.7, 4.0).Shape())
        .Shape();
}

constexpr char kTextStl[] =
    "solid s\n facet normal 0 0 1\n  outer loop\n   vertex 0 0 0\n   vertex 1 0 0\n   vertex 0 1 0\n  endloop\n "
    "endfacet\n"
    " facet normal 0 0 1\n  outer loop\n   vertex 1 0 0\n   vertex 1 1 0\n   vertex 0 1 0\n  endloop\n "
    "endfacet\nendsolid s\n";

constexpr char kTextPly[] =
    "ply\nformat ascii 1.0\ncomment c\nelement vertex 4\nproperty float x\nproperty float y\nproperty float z\n"
    "property uchar red\nproperty uchar green\nproperty uchar blue\nelement face 2\n"
    "property list uchar int vertex_indices\nend_header\n0 0 0 255 0 0\n1 0 0 0 255 0\n1 1 0 0 0 255\n0 1 0 9 9 9\n"
    "3 0 1 2\n3 0 2 3\n";

std::string Iges()
{
    IGESControl_Writer writer;
    writer.AddShape(Solid());
    writer.ComputeModel();
    std::ostringstream out;
    writer.Write(out);
    return out.str();
}

// What an export writes, with what stands beside it.
ModelFiles::Model Exported(std::string const& name, std::string const& extension)
{
    Test::TempFolder const folder;
    std::string const source = folder.NarrowPathOf("m.brep");
    WriteBytes(source, ModelFiles::Brep());
    ConvertResult const result = ConvertModel(source, folder.NarrowPathOf("m" + extension));
    if (result.outcome != Outcome::kDone)
        throw std::runtime_error(result.failure);
    ModelFiles::Model model{name, extension, {}};
    for (std::filesystem::directory_entry const& entry : std::filesystem::directory_iterator(folder.Path()))
    {
        std::string const file = entry.path().filename().string();
        if (file == "m" + extension)
            model.bytes = ReadBytes(entry.path().string());
        else if (file != "m.brep")
            model.beside.emplace_back(file, ReadBytes(entry.path().string()));
    }
    return model;
}

std::string Example(char const* name, std::size_t most)
{
    std::string bytes = ReadBytes(std::string(KVR_EXAMPLES_DIR) + "/models/" + name);
    return bytes.size() > most ? bytes.substr(0, most) : bytes;
}

}  // namespace

std::string ModelFiles::Brep()
{
    std::ostringstream out;
    BRepTools::Write(Solid(), out);
    return out.str();
}

std::vector<ModelFiles::Model> ModelFiles::All()
{
    std::ostringstream binary;
    BinTools::Write(Solid(), binary);
    constexpr std::size_t kWhole = std::size_t{1} << 30U;
    return {Exported("STEP AP242", ".step"),
            {"STEP AP203", ".stp", Example("nist_ctc_03_ap203.stp", kWhole)},
            {"IGES", ".igs", Iges()},
            {"BREP text", ".brep", Brep()},
            {"BREP binary", ".brep", binary.str()},
            Exported("glTF", ".gltf"),
            Exported("GLB", ".glb"),
            {"STL text", ".stl", kTextStl},
            Exported("STL binary", ".stl"),
            Exported("OBJ", ".obj"),
            {"PLY text", ".ply", kTextPly},
            Exported("PLY binary", ".ply")};
}

}  // namespace KVR::Campaigns
