#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <filesystem>

#include "authoring/MeshStoreWriter.h"
#include "framework/api/Exception.h"
#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

using namespace Authoring;
using testing::ElementsAre;

// A mesh as lists, made by chance; what is written and what is read are compared through it.
struct MeshLists
{
    std::vector<double> vertices;
    std::vector<double> normals;
    std::vector<std::vector<double>> textureSets;
    struct PolygonLists
    {
        std::vector<std::uint64_t> vertices;
        std::vector<std::uint64_t> normals;
        std::vector<TextureReference> textures;
        std::optional<std::uint64_t> material;
    };
    std::vector<PolygonLists> polygons;
};

std::vector<double> Doubles(std::size_t count)
{
    return *rc::gen::container<std::vector<double>>(count, rc::gen::arbitrary<double>());
}

std::vector<std::uint64_t> Indices(std::size_t count)
{
    return *rc::gen::container<std::vector<std::uint64_t>>(count, rc::gen::inRange<std::uint64_t>(0, 1000));
}

MeshLists AnyMesh(MeshStoreLayout layout)
{
    MeshLists mesh;
    mesh.vertices = Doubles(3 * *rc::gen::inRange<std::size_t>(0, 20));
    mesh.normals = Doubles(3 * *rc::gen::inRange<std::size_t>(0, 5));
    std::size_t const sets = *rc::gen::inRange<std::size_t>(0, layout == MeshStoreLayout::kMeshInfo ? 4 : 2);
    for (std::size_t i = 0; i < sets; ++i)
        mesh.textureSets.push_back(Doubles(2 * *rc::gen::inRange<std::size_t>(1, 5)));
    std::size_t const polygons = *rc::gen::inRange<std::size_t>(0, 30);
    for (std::size_t i = 0; i < polygons; ++i)
    {
        MeshLists::PolygonLists polygon;
        polygon.vertices = Indices(*rc::gen::inRange<std::size_t>(1, 40));
        if (!mesh.normals.empty() && *rc::gen::arbitrary<bool>())
            polygon.normals = Indices(polygon.vertices.size());
        if (sets > 0 && *rc::gen::arbitrary<bool>())
        {
            for (std::size_t v = 0; v < polygon.vertices.size(); ++v)
            {
                for (std::size_t s = 0; s < sets; ++s)
                    polygon.textures.push_back({s, 100 * v + s});
            }
        }
        if (*rc::gen::arbitrary<bool>())
            polygon.material = *rc::gen::inRange<std::uint64_t>(0, 3);
        mesh.polygons.push_back(polygon);
    }
    return mesh;
}

void WriteMesh(MeshStoreWriter& writer, MeshLists const& mesh, MeshStoreLayout layout)
{
    MeshHead head{mesh.vertices.size() / 3, mesh.normals.size() / 3, mesh.polygons.size(), mesh.textureSets.size(), 0};
    if (layout == MeshStoreLayout::kGeometryInfo && !mesh.textureSets.empty())
        head.textureVertexCount = mesh.textureSets.front().size() / 2;
    for (char const* const material : {"a", "b", "c"})
        writer.AddMaterial(material);
    writer.BeginMesh("m", head);
    writer.Vertices(mesh.vertices);
    writer.Normals(mesh.normals);
    for (std::vector<double> const& set : mesh.textureSets)
        writer.TextureSet(2, set);
    for (MeshLists::PolygonLists const& polygon : mesh.polygons)
        writer.Polygon({polygon.vertices, polygon.material, polygon.normals, polygon.textures});
    writer.EndMesh();
}

std::vector<int> Narrow(std::vector<std::uint64_t> const& indices)
{
    return indices.empty() ? kNoList : std::vector<int>(indices.begin(), indices.end());
}

std::vector<int> TextureIndices(std::vector<TextureReference> const& textures)
{
    std::vector<int> indices;
    for (TextureReference const& texture : textures)
        indices.push_back(static_cast<int>(texture.vertex));
    return indices.empty() ? kNoList : indices;
}

std::string MaterialOf(IPolygonMesh const& mesh, unsigned long polygon)
{
    IdSetSet sets;
    long const slot = SlotOf(mesh, polygon);
    if (slot < 0 || mesh.PolygonMaterials(sets) != kIsValueSpecified_Yes)
        return "";
    return Text(sets.At(static_cast<unsigned long long>(slot)).At(0));
}

void ExpectEqual(MeshLists const& written, IPolygonMesh const& read)
{
    RC_ASSERT(read.VertexCount() == written.vertices.size() / 3);
    for (unsigned long i = 0; i < read.VertexCount(); ++i)
    {
        PolygonVertex const vertex = read.VertexAt(i);
        RC_ASSERT(vertex.x == written.vertices[3 * i] && vertex.y == written.vertices[3 * i + 1] &&
                  vertex.z == written.vertices[3 * i + 2]);
    }
    RC_ASSERT(read.NormalCount() == written.normals.size() / 3);
    RC_ASSERT(read.TextureVertexSetCount() == written.textureSets.size());
    RC_ASSERT(read.PolygonCount() == written.polygons.size());
    for (unsigned long i = 0; i < read.PolygonCount(); ++i)
    {
        MeshLists::PolygonLists const& expected = written.polygons[i];
        EditablePolygon const& polygon = PolygonOf(read, i);
        RC_ASSERT(List(polygon.VertexIndices()) == Narrow(expected.vertices));
        RC_ASSERT(List(polygon.NormalIndices()) == Narrow(expected.normals));
        RC_ASSERT(List(polygon.TextureVertexIndices()) == TextureIndices(expected.textures));
        RC_ASSERT(MaterialOf(read, i) ==
                  (expected.material ? std::string(1, static_cast<char>('a' + *expected.material)) : ""));
    }
}

TEST(MeshStoreWriter, WhatIsWrittenIsReadInBothLayouts)
{
    EXPECT_TRUE(rc::check(
        []
        {
            for (MeshStoreLayout const layout : {MeshStoreLayout::kMeshInfo, MeshStoreLayout::kGeometryInfo})
            {
                MeshLists const mesh = AnyMesh(layout);
                TestScene scene(StoreScene(layout == MeshStoreLayout::kMeshInfo ? kMeshInfo : kGeometryInfo, {"m"}));
                MeshStoreWriter writer(Wide((scene.Folder() + "/s.mesh").c_str()), layout);
                WriteMesh(writer, mesh, layout);
                writer.Finish();
                ExpectEqual(mesh, scene.Begin().Get<IPolygonMesh>("m"));
            }
        }));
}

TEST(MeshStoreWriter, CurvesOfEveryKindAreReadAsTheyWereWritten)
{
    EXPECT_TRUE(rc::check(
        []
        {
            std::vector<double> const numbers = *rc::gen::container<std::vector<double>>(
                12, rc::gen::map(rc::gen::arbitrary<int>(), [](int i) { return i / 64.0; }));
            Triple const a{numbers[0], numbers[1], numbers[2]};
            Triple const b{numbers[3], numbers[4], numbers[5]};
            std::vector<CurveRecord> const curves = {
                {LineRecord{a, b, numbers[6], numbers[7]}},
                {RayRecord{a, b}},
                {EllipseRecord{*rc::gen::arbitrary<bool>(),
                               *rc::gen::arbitrary<bool>(),
                               a,
                               b,
                               {numbers[8], numbers[9], numbers[10]},
                               numbers[11],
                               numbers[6],
                               numbers[7]}},
                {PolylineRecord{false, false, {a, b}, std::vector<Triple>{b, a}}},
                {NurbsRecord{false, false, {0, 0, 1, 1}, {a, b}, std::nullopt, 1, 0, 1}},
            };
            TestScene scene(StoreScene(kMeshInfo, {}, {"0", "1", "2", "3", "4", "all"}));
            MeshStoreWriter writer(Wide((scene.Folder() + "/s.mesh").c_str()), MeshStoreLayout::kMeshInfo);
            CompositeRecord composite;
            for (std::size_t i = 0; i < curves.size(); ++i)
            {
                writer.Curve(UTF8String(std::to_string(i).c_str()), curves[i]);
                composite.segments.push_back(
                    {"s", std::make_shared<CurveRecord>(curves[i]), 1, static_cast<double>(i), i + 1.0, 7});
            }
            writer.Curve("all", {composite});
            writer.Finish();
            scene.Begin();
            double x = 0;
            double y = 0;
            double z = 0;
            auto const data = [&](char const* id) { return scene.Get<ICurve>(id).CurveDataAt(0); };
            dynamic_cast<IStraightData&>(*data("0")).Direction(x, y, z);
            RC_ASSERT((Triple{x, y, z} == b));
            dynamic_cast<IRayData&>(*data("1")).Origin(x, y, z);
            RC_ASSERT((Triple{x, y, z} == a));
            dynamic_cast<IEllipseData&>(*data("2")).Normal(x, y, z);
            RC_ASSERT((Triple{x, y, z} == Triple{numbers[8], numbers[9], numbers[10]}));
            dynamic_cast<IPolyLineData&>(*data("3")).VectorAt(0, x, y, z);
            RC_ASSERT((Triple{x, y, z} == b));
            double weight = 0;
            dynamic_cast<INurbsCurveData&>(*data("4")).ControlPoint(1, x, y, z, weight);
            RC_ASSERT((Triple{x, y, z} == b) && weight == 1.0);
            std::uint32_t count = 0;
            dynamic_cast<ICompositeCurveData&>(*data("all")).SegmentCount(count);
            RC_ASSERT(count == curves.size());
        }));
}

TEST(MeshStoreWriter, SegmentsAreReadAsTheyWereWritten)
{
    TestScene scene(StoreScene(std::string(kMeshInfo) + kSegmentInfo, {"m"}));
    MeshStoreWriter meshes(Wide((scene.Folder() + "/s.mesh").c_str()), MeshStoreLayout::kMeshInfo);
    meshes.BeginMesh("m", {});
    meshes.EndMesh();
    meshes.Finish();
    SegmentStoreWriter segments(Wide((scene.Folder() + "/s.seg").c_str()));
    std::vector<SegmentStoreWriter::Indices> const faces = {{1, 2, 3}, {}};
    std::vector<SegmentStoreWriter::Indices> const edges = {{9, 8}};
    segments.Mesh("m", faces, edges, {false});
    segments.Finish();
    auto& mesh = scene.Begin().Get<IPolygonMesh>("m");
    FaceSegmentInfo face;
    ASSERT_EQ(mesh.FaceSegmentAt(0, face), kIsValueSpecified_Yes);
    EXPECT_THAT(face.PolygonIndices().Indices(), ElementsAre(1U, 2U, 3U));
    EXPECT_FALSE(face.IsVisible());
    VertexIndexSet vertices;
    ASSERT_EQ(mesh.EdgeSegmentAt(0, vertices), kIsValueSpecified_Yes);
    EXPECT_THAT(vertices.Indices(), ElementsAre(9, 8));
}

TEST(MeshStoreWriter, AFileAppearsWholeOrNotAtAll)
{
    TempFolder folder;
    std::string const path = folder.NarrowPathOf("größe.mesh");
    {
        MeshStoreWriter writer(Wide(path.c_str()), MeshStoreLayout::kMeshInfo);
        writer.BeginMesh("m", {1, 0, 0, 0, 0});
        EXPECT_FALSE(std::filesystem::exists(path));
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
    MeshStoreWriter writer(Wide(path.c_str()), MeshStoreLayout::kMeshInfo);
    writer.Finish();
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), std::filesystem::directory_iterator()),
              1);
}

TEST(MeshStoreWriter, AFolderThatIsNotThereIsAFileException)
{
    EXPECT_THROW(MeshStoreWriter(L"/nowhere/at/all.mesh", MeshStoreLayout::kMeshInfo), FileException);
}

TEST(MeshStoreWriter, CallsThatDoNotFitTogetherAreRefused)
{
    TempFolder folder;
    std::uint64_t const triangle[] = {0, 1, 2};
    double const numbers[] = {0, 0, 0};
    MeshStoreWriter writer(folder.PathOf("a"), MeshStoreLayout::kGeometryInfo);
    EXPECT_THROW(writer.AddMaterial(""), GeneralException);
    EXPECT_THROW(writer.BeginMesh("", {}), GeneralException);
    EXPECT_THROW(writer.Vertices(numbers), GeneralException);
    EXPECT_THROW(writer.BeginMesh("m", {0, 0, 0, 2, 0}), GeneralException) << "one set at most";
    writer.BeginMesh("m", {1, 0, 1, 0, 0});
    EXPECT_THROW(writer.BeginMesh("n", {}), GeneralException);
    EXPECT_THROW(writer.EndMesh(), GeneralException);
    writer.Vertices(numbers);
    EXPECT_THROW(writer.Polygon({{}, {}, {}, {}}), GeneralException);
    EXPECT_THROW(writer.Polygon({triangle, {}, triangle, {}}), GeneralException) << "the mesh has no normals";
    EXPECT_THROW(writer.Finish(), GeneralException);
    EXPECT_THROW(writer.Curve("c", {RayRecord{}}), GeneralException);
}

}  // namespace

}  // namespace KVR::Test
