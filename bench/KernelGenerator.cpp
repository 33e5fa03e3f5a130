#include "bench/KernelGenerator.h"

#include <fmt/format.h>
#include <BRepFilletAPI_MakeFillet.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <stdexcept>
#include <vector>

#include "authoring/KernelStoreWriter.h"

namespace KVR::Bench
{

namespace
{

// A block with its four upright edges rounded, in a size of its own.
TopoDS_Shape Block(unsigned number)
{
    TopoDS_Shape const box = BRepPrimAPI_MakeBox(10.0 + 0.01 * number, 20.0, 30.0).Shape();
    BRepFilletAPI_MakeFillet fillet(box);
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(box, TopAbs_EDGE, edges);
    for (int i = 1; i <= 4; ++i)
        fillet.Add(1.0, TopoDS::Edge(edges.FindKey(i)));
    return fillet.Shape();
}

}  // namespace

void WriteKernelStore(KernelStoreFiles const& files, unsigned bodies)
{
    Authoring::KernelStoreWriter writer(
        UTF16String(UTF8String(files.store)),
        files.isText ? Authoring::KernelStoreForm::kText : Authoring::KernelStoreForm::kBinary);
    BRep_Builder builder;
    TopoDS_Compound compound;
    builder.MakeCompound(compound);
    for (unsigned i = 0; i < bodies; ++i)
    {
        TopoDS_Shape const block = Block(i);
        builder.Add(compound, block);
        std::vector<Authoring::SubEntityId> faces;
        for (unsigned face = 0; face < 6; ++face)
            faces.push_back({face, UTF8String(fmt::format("body{}.face{}", i, face))});
        writer.Body(UTF8String(fmt::format("body{}", i)), block, faces);
    }
    writer.Finish();
    if (files.shapes.empty())
        return;
    if (!(files.isText ? BRepTools::Write(compound, files.shapes.c_str())
                       : BinTools::Write(compound, files.shapes.c_str())))
        throw std::runtime_error("Cannot write " + files.shapes);
}

}  // namespace KVR::Bench
