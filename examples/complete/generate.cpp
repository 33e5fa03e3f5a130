// Writes the stores and the assets of this example into the folder that is given; the other files are written by hand.

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include <TopoDS_Shape.hxx>

#include "authoring/KernelStoreWriter.h"
#include "authoring/MeshStoreWriter.h"
#include "authoring/VitreolAssetWriter.h"
#include "tests/support/Shapes.h"

namespace
{

using namespace KVR;
using namespace KVR::Authoring;

UTF16String PathIn(std::string const& folder, char const* name)
{
    return UTF16String(UTF8String((folder + "/" + name).c_str()));
}

void WriteMesh(MeshStoreWriter& store, char const* id, double size)
{
    std::uint64_t const material = store.AddMaterial(UTF8String("steel"));
    store.BeginMesh(UTF8String(id), MeshHead{3, 0, 1, 0, 0});
    std::vector<double> const vertices = {0, 0, 0, size, 0, 0, 0, size, 0};
    store.Vertices(vertices);
    std::vector<std::uint64_t> const corners = {0, 1, 2};
    store.Polygon(PolygonRecord{corners, material, {}, {}});
    store.EndMesh();
}

void WriteMeshStores(std::string const& folder)
{
    MeshStoreWriter meshes(PathIn(folder, "complete.mesh"), MeshStoreLayout::kMeshInfo);
    WriteMesh(meshes, "mesh", 10.0);
    meshes.Finish();
    MeshStoreWriter geometry(PathIn(folder, "complete.geometry"), MeshStoreLayout::kGeometryInfo);
    WriteMesh(geometry, "drilled", 5.0);
    geometry.Curve(UTF8String("curve"), CurveRecord{LineRecord{{0, 0, 0}, {1, 0, 0}, 0.0, 10.0}});
    geometry.Finish();
    SegmentStoreWriter segments(PathIn(folder, "complete.seg"));
    std::vector<SegmentStoreWriter::Indices> const faces = {{0}};
    std::vector<SegmentStoreWriter::Indices> const edges = {{0, 1}};
    segments.Mesh(UTF8String("mesh"), faces, edges, {true});
    segments.Finish();
}

void WriteKernelStores(std::string const& folder)
{
    KernelStoreWriter binary(PathIn(folder, "complete.sab"), KernelStoreForm::kBinary);
    binary.Body(UTF8String("body"), Test::BoxShape(10, 20, 30), {{0, UTF8String("face")}}, {{0, UTF8String("edge")}});
    binary.Edge(UTF8String("kernel-edge"), Test::ArcEdge());
    binary.Finish();
    KernelStoreWriter text(PathIn(folder, "complete.sat"), KernelStoreForm::kText);
    text.Body(UTF8String("text-body"), Test::BoxShape(1, 2, 3));
    text.Finish();
}

void WriteOthers(std::string const& folder)
{
    VitreolAssetWriter assets(PathIn(folder, "complete.assets"));
    std::vector<unsigned char> const content = {0xde, 0xad, 0xbe, 0xef};
    assets.Asset(UTF8String("oak"), UTF8String("wood"), content);
    assets.Finish();
}

}  // namespace

int main(int count, char** arguments)
{
    if (count != 2)
    {
        std::fprintf(stderr, "usage: kvr_example_complete FOLDER\n");
        return 2;
    }
    try
    {
        WriteMeshStores(arguments[1]);
        WriteKernelStores(arguments[1]);
        WriteOthers(arguments[1]);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "%s\n", exception.what());
        return 1;
    }
}
