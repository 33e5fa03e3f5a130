#include "fuzz/StoreRun.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "framework/api/ICurveData.h"
#include "fuzz/InputFile.h"
#include "geometry/XMLCurve.h"
#include "mesh/SideStoreReader.h"
#include "mesh/XMLPolygonMesh.h"

namespace KVR::Fuzz
{

namespace
{

void AskPolygons(XMLPolygonMesh const& mesh)
{
    for (unsigned long i = 0; i < mesh.PolygonCount(); ++i)
    {
        EditablePolygon const* polygon = nullptr;
        mesh.PolygonAt(i, polygon);
        unsigned long long sum = 0;
        for (EditablePolygon::IndexList const& list : {polygon->VertexIndices(), polygon->NormalIndices(),
                                                       polygon->TextureSetIndices(), polygon->TextureVertexIndices()})
        {
            for (int k = 0; k < list.count; ++k)
                sum += static_cast<unsigned int>(list.data[k]);
        }
        if (polygon->VertexIndices().count != polygon->VertexCount() || sum == ~0ULL)
            std::abort();
        unsigned int material = 0;
        IdSetSet materials;
        if (mesh.PolygonMaterialIndexAt(i, material) == kIsValueSpecified_Yes &&
            (mesh.PolygonMaterials(materials) != kIsValueSpecified_Yes || material >= materials.Size()))
            std::abort();
    }
}

void AskMesh(XMLPolygonMesh const& mesh)
{
    for (unsigned long i = 0; i < mesh.TextureVertexSetCount(); ++i)
    {
        if (mesh.TextureVertexSetAt(i)->VertexCount() == 0)
            std::abort();
    }
    FaceSegmentInfo face;
    EdgeSegmentInfo edge;
    for (unsigned long i = 0; i <= mesh.FaceSegmentCount(); ++i)
        mesh.FaceSegmentAt(i, face);
    for (unsigned long i = 0; i <= mesh.EdgeSegmentCount(); ++i)
        mesh.EdgeSegmentInfoAt(i, edge);
    AskPolygons(mesh);
}

void AskCurve(XMLCurve const& curve)
{
    ICurveData const* const data = curve.CurveDataAt(0);
    if (!data)
        return;
    Position point;
    Interval range(0.0, 0.0);
    double parameter = 0.0;
    data->ParameterRange(range);
    data->StartPoint_ex(point);
    data->EndPoint_ex(point);
    data->Evaluate_ex(0.5 * (range.Lower() + range.Upper()), point);
    data->Param_ex(Position(1.0, 2.0, 3.0), parameter);
}

}  // namespace

int RunMeshStore(std::uint8_t const* data, std::size_t size, bool geometryInfoLayout)
{
    static InputFile const file("scene.mesh");
    file.Write(data, size);
    MeshStore meshes;
    CurveStore curves;
    try
    {
        SideStoreReader reader(file.Path(), nullptr, geometryInfoLayout);
        static_cast<void>(reader.ReadMeshStore(L"scene.mesh", meshes, curves));
    }
    catch (std::length_error const&)
    {
        // A count that no list can hold; what was built before is asked all the same.
    }
    for (auto const& [id, entry] : meshes)
        AskMesh(*entry.object);
    for (auto const& [id, entry] : curves)
        AskCurve(*entry.object);
    return 0;
}

int RunSegmentStore(std::uint8_t const* data, std::size_t size)
{
    static InputFile const file("scene.seg");
    file.Write(data, size);
    MeshStore meshes;
    for (char const* const id : {"a", "b", "c"})
    {
        auto& entry = meshes[id];
        entry.owned = std::make_unique<XMLPolygonMesh>(UTF8String(id), nullptr);
        entry.object = entry.owned.get();
    }
    try
    {
        SideStoreReader reader(file.Path(), nullptr, false);
        static_cast<void>(reader.ReadMeshSegmentStore(file.Path(), meshes));
    }
    catch (std::length_error const&)
    {
    }
    for (auto const& [id, entry] : meshes)
    {
        if (entry.object)
            AskMesh(*entry.object);
    }
    return 0;
}

}  // namespace KVR::Fuzz
