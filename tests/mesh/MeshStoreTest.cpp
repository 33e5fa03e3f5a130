#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>

#include "framework/api/ICurveData.h"
#include "framework/api/IOUtil.h"
#include "framework/xml_util/StoreCursor.h"
#include "geometry/XMLCurve.h"
#include "mesh/MeshRecordReader.h"
#include "mesh/SideStoreReader.h"
#include "mesh/StoreMemory.h"
#include "mesh/XMLPolygonMesh.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

std::string const kOneTriangle = MeshInfoHeader(1).Bytes() + TriangleRecord("m");

TEST(MeshStore, ATriangleComesThroughWithItsVertices)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    auto& mesh = scene.WithFile("s.mesh", kOneTriangle).Begin().Get<IPolygonMesh>("m");
    ASSERT_EQ(mesh.VertexCount(), 3U);
    EXPECT_EQ(mesh.VertexAt(2).x, 2.0);
    EXPECT_EQ(mesh.VertexAt(2).y, 20.0);
    EXPECT_EQ(mesh.VertexAt(2).z, 200.0);
    ASSERT_EQ(mesh.PolygonCount(), 1U);
    EXPECT_THAT(List(PolygonOf(mesh, 0).VertexIndices()), ElementsAre(0, 1, 2));
    EXPECT_EQ(PolygonOf(mesh, 0).VertexCount(), 3);
    EXPECT_EQ(List(PolygonOf(mesh, 0).NormalIndices()), kNoList);
    EXPECT_EQ(List(PolygonOf(mesh, 0).TextureSetIndices()), kNoList);
    EXPECT_EQ(mesh.NormalCount(), 0U);
    EXPECT_EQ(SlotOf(mesh, 0), -1);
}

TEST(MeshStore, TheGeometryInfoLayoutHasNoHeaderWord)
{
    TestScene scene(StoreScene(kGeometryInfo, {"m"}));
    scene.WithFile("s.mesh", GeometryInfoHeader(1).Bytes() + TriangleRecord("m")).Begin();
    EXPECT_EQ(scene.Get<IPolygonMesh>("m").VertexCount(), 3U);
}

TEST(MeshStore, AStoreWithoutRecordsFailsAndTheScanGoesOn)
{
    for (char const* const info : {kMeshInfo, kGeometryInfo})
    {
        bool const isGeometryInfo = info == kGeometryInfo;
        std::string const bytes = isGeometryInfo ? GeometryInfoHeader(0).Bytes() : MeshInfoHeader(0).Bytes();
        TempFolder folder;
        folder.Write("s.mesh", bytes + TriangleRecord("m"));
        MeshStore meshes;
        CurveStore curves;
        SideStoreReader reader(folder.PathOf("scene.xml"), nullptr, isGeometryInfo);
        EXPECT_FALSE(reader.ReadMeshStore(L"s.mesh", meshes, curves)) << info;
        EXPECT_TRUE(meshes.empty()) << info;

        TestScene scene(
            StoreScene(std::string(info) + R"(<MeshInfo GenerateMesh="True" Path="behind.mesh"/>)", {"m", "n"}));
        scene.WithFile("s.mesh", bytes + TriangleRecord("m"))
            .WithFile("behind.mesh", MeshInfoHeader(1).Bytes() + TriangleRecord("n"))
            .Begin();
        EXPECT_FALSE(scene.Has("m")) << info;
        EXPECT_TRUE(scene.Has("n")) << info << ": the element behind it is read";
    }
}

TEST(MeshStore, AMissingStoreIsPassedOver)
{
    TestScene scene(std::string("<Scene>") + kMeshInfo +
                    R"(<MeshInfo GenerateMesh="True" Path="t.mesh"/><IPolygonMesh ID="m"/></Scene>)");
    scene.WithFile("t.mesh", kOneTriangle).Begin();
    EXPECT_TRUE(scene.Has("m"));
}

struct StoreElement
{
    char const* name;
    char const* switchName;
};

constexpr StoreElement kStoreElements[] = {
    {"MeshInfo", "GenerateMesh"}, {"GeometryInfo", "GenerateGeometry"}, {"MeshSegmentInfo", "GenerateMeshSegment"}};

// Whether an element with the attributes reads its store, which stands behind a mesh store that is read in any case.
bool IsRead(StoreElement const& element, std::string const& attributes)
{
    std::string const name = element.name;
    TestScene scene(StoreScene(std::string(kMeshInfo) + "<" + name + " " + attributes + "/>", {"m", "t"}));
    scene.WithFile("s.mesh", kOneTriangle)
        .WithFile("MeshInfo", MeshInfoHeader(1).Bytes() + TriangleRecord("t"))
        .WithFile("GeometryInfo", GeometryInfoHeader(1).Bytes() + TriangleRecord("t"))
        .WithFile("MeshSegmentInfo", ByteBuilder().U64(1).String("m").U64(1).U64(0).U64(0).U64(0).Bytes());
    scene.Begin();
    return scene.Has("t") || scene.Get<IPolygonMesh>("m").FaceSegmentCount() > 0;
}

TEST(MeshStore, OnlyTheWordTrueSwitchesAStoreOn)
{
    for (StoreElement const& element : kStoreElements)
    {
        std::string const name = element.name;
        std::string const path = "Path='" + name + "'";
        std::string const on = std::string(element.switchName) + "='True'";
        EXPECT_TRUE(IsRead(element, on + " " + path)) << name;
        for (char const* const word : {"true", "1", "TRUE", "False", "", " True"})
            EXPECT_FALSE(IsRead(element, std::string(element.switchName) + "='" + word + "' " + path)) << name << word;
        EXPECT_FALSE(IsRead(element, path)) << name << " without its switch";
        EXPECT_FALSE(IsRead(element, on)) << name << " without a path";
        EXPECT_FALSE(IsRead(element, on + " path='" + name + "'")) << name << " without a path";
    }
}

TEST(MeshStore, AReaderAnswersWhetherThereWasAnythingToRead)
{
    TempFolder folder;
    folder.Write("empty", "");
    folder.Write("none", MeshInfoHeader(0).Bytes());
    folder.Write("cut", MeshInfoHeader(9).Bytes());
    folder.Write("whole", kOneTriangle);
    MeshStore meshes;
    CurveStore curves;
    SideStoreReader reader(folder.PathOf("scene.xml"), nullptr, false);
    EXPECT_TRUE(reader.ReadMeshSegmentStore(folder.PathOf("missing"), meshes)) << "there is no mesh: nothing is opened";
    EXPECT_FALSE(reader.ReadMeshStore(L"missing", meshes, curves));
    EXPECT_FALSE(reader.ReadMeshStore(L"empty", meshes, curves));
    EXPECT_FALSE(reader.ReadMeshStore(L"none", meshes, curves));
    EXPECT_TRUE(meshes.empty());
    EXPECT_TRUE(reader.ReadMeshStore(L"cut", meshes, curves)) << "whatever is missing";
    EXPECT_TRUE(reader.ReadMeshStore(L"whole", meshes, curves));
    EXPECT_EQ(meshes.size(), 1U);
    EXPECT_FALSE(reader.ReadMeshSegmentStore(folder.PathOf("missing"), meshes));
    EXPECT_FALSE(reader.ReadMeshSegmentStore(folder.PathOf("empty"), meshes));
    folder.Write("segments", ByteBuilder().U64(9).Bytes());
    EXPECT_TRUE(reader.ReadMeshSegmentStore(folder.PathOf("segments"), meshes));
}

TEST(MeshStore, WordsThatAreNotUsedMayHoldAnything)
{
    std::uint64_t const any = ~std::uint64_t{0};
    std::string const head = ByteBuilder().U64(3).U64(0).U64(1).U64(any).U64(0).Bytes();
    std::string const record = ByteBuilder().U64(any).U64(0).String("m").Raw(head).Raw(VertexBytes(3)).Bytes() +
                               PolygonFront({0, 1, 2}).Byte(0).Bytes();
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    scene.WithFile("s.mesh", ByteBuilder().U64(any).U64(1).U64(0).Raw(record).Bytes()).Begin();
    EXPECT_EQ(scene.Get<IPolygonMesh>("m").PolygonCount(), 1U);
}

TEST(MeshStore, TwoStoresFillOneIndexAndTheFirstMeshOfAnIdStays)
{
    TestScene scene(
        StoreScene(std::string(kMeshInfo) + R"(<MeshInfo GenerateMesh="True" Path="t.mesh"/>)", {"m", "n"}));
    std::string const second = MeshInfoHeader(2).Bytes() + RecordFront(0, "m") + MeshHeadBytes(1, 0, 0, 0) +
                               VertexBytes(1) + TriangleRecord("n");
    scene.WithFile("s.mesh", kOneTriangle).WithFile("t.mesh", second).Begin();
    EXPECT_EQ(scene.Get<IPolygonMesh>("m").VertexCount(), 3U);
    EXPECT_EQ(scene.Get<IPolygonMesh>("n").VertexCount(), 3U);
}

// A store of one mesh whose polygons have the given store materials; `table` is what stands at the material table.
std::string StoreWithMaterials(std::vector<std::uint64_t> const& materials, std::string const& table,
                               std::size_t vertexCount = 3)
{
    std::string record = RecordFront(0, "m") + MeshHeadBytes(3, 0, materials.size(), 0) + VertexBytes(3);
    for (std::uint64_t const material : materials)
        record += PolygonFront(std::vector<std::uint64_t>(vertexCount, 1)).Byte(1).U64(material).Bytes();
    return MeshInfoHeader(1, 24 + record.size()).Bytes() + record + table;
}

std::string Table(std::vector<std::string> const& ids)
{
    ByteBuilder bytes;
    bytes.U64(ids.size());
    for (std::string const& id : ids)
        bytes.String(id);
    return bytes.Bytes();
}

std::vector<std::string> MaterialsOf(IPolygonMesh const& mesh)
{
    IdSetSet sets;
    std::vector<std::string> ids;
    if (mesh.PolygonMaterials(sets) != kIsValueSpecified_Yes)
        return {"(none)"};
    for (unsigned long long i = 0; i < sets.Size(); ++i)
    {
        EXPECT_EQ(sets.At(i).Size(), 1U);
        ids.push_back(Text(sets.At(i).At(0)));
    }
    return ids;
}

TEST(MeshStore, MaterialsGetSlotsInTheOrderOfTheirFirstUse)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    scene.WithFile("s.mesh", StoreWithMaterials({7, 3, 7}, Table({"0", "1", "2", "three", "4", "5", "6", "seven"})));
    auto& mesh = scene.Begin().Get<IPolygonMesh>("m");
    EXPECT_EQ(SlotOf(mesh, 0), 0);
    EXPECT_EQ(SlotOf(mesh, 1), 1);
    EXPECT_EQ(SlotOf(mesh, 2), 0);
    EXPECT_THAT(MaterialsOf(mesh), ElementsAre("seven", "three"));
}

TEST(MeshStore, AMaterialIndexOfTheCountOrAboveIsNoMaterial)
{
    // Small polygons are read in another way than large ones.
    for (std::size_t const vertexCount : {1U, 3U, 16U, 17U, 40U})
    {
        TestScene scene(StoreScene(kMeshInfo, {"m"}));
        std::string const store =
            StoreWithMaterials({2, 1, std::uint64_t{1} << 32, ~std::uint64_t{0}, 1}, Table({"a", "b"}), vertexCount);
        auto& mesh = scene.WithFile("s.mesh", store).Begin().Get<IPolygonMesh>("m");
        ASSERT_EQ(mesh.PolygonCount(), 5U) << vertexCount;
        EXPECT_EQ(SlotOf(mesh, 0), -1) << vertexCount;
        EXPECT_EQ(SlotOf(mesh, 1), 0) << vertexCount;
        EXPECT_EQ(SlotOf(mesh, 2), -1) << vertexCount;
        EXPECT_EQ(SlotOf(mesh, 3), -1) << vertexCount;
        EXPECT_EQ(SlotOf(mesh, 4), 0) << vertexCount;
        EXPECT_THAT(MaterialsOf(mesh), ElementsAre("b")) << vertexCount;
    }
}

TEST(MeshStore, TheNumberOfMaterialsIsKeptAs32Bits)
{
    auto const table = [](std::uint64_t count)
    { return ByteBuilder().U64(count).String("a").String("b").String("c").Bytes(); };
    std::uint64_t const beyond = std::uint64_t{1} << 32;
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    scene.WithFile("s.mesh", StoreWithMaterials({0, 1}, table(beyond + 1)));
    auto& mesh = scene.Begin().Get<IPolygonMesh>("m");
    EXPECT_EQ(SlotOf(mesh, 0), 0);
    EXPECT_EQ(SlotOf(mesh, 1), -1);
    TestScene none(StoreScene(kMeshInfo, {"m"}));
    none.WithFile("s.mesh", StoreWithMaterials({0}, table(beyond)));
    EXPECT_EQ(SlotOf(none.Begin().Get<IPolygonMesh>("m"), 0), -1);
}

TEST(MeshStore, AStoreHasTheMaterialsOfItsOwnTableAlone)
{
    TempFolder folder;
    folder.Write("with", StoreWithMaterials({0}, Table({"a"})));
    std::string const record =
        RecordFront(0, "n") + MeshHeadBytes(0, 0, 1, 0) + PolygonFront({0}).Byte(1).U64(0).Bytes();
    folder.Write("without", MeshInfoHeader(1).Bytes() + record);
    MeshStore meshes;
    CurveStore curves;
    SideStoreReader reader(folder.PathOf("scene.xml"), nullptr, false);
    ASSERT_TRUE(reader.ReadMeshStore(L"with", meshes, curves));
    ASSERT_TRUE(reader.ReadMeshStore(L"without", meshes, curves));
    EXPECT_THAT(MaterialsOf(*meshes["m"].object), ElementsAre("a"));
    EXPECT_THAT(MaterialsOf(*meshes["n"].object), ElementsAre("(none)"));
}

TEST(MeshStore, AnEmptyMaterialIdIsDroppedAndThoseBehindItMoveUp)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    scene.WithFile("s.mesh", StoreWithMaterials({1, 2}, Table({"a", "", "c"})));
    auto& mesh = scene.Begin().Get<IPolygonMesh>("m");
    EXPECT_THAT(MaterialsOf(mesh), ElementsAre("c"));
    EXPECT_EQ(SlotOf(mesh, 0), 0);
    EXPECT_EQ(SlotOf(mesh, 1), -1) << "below the count, and beyond the end of the table";
}

TEST(MeshStore, ATableOffsetBelowEightIsNoTable)
{
    for (std::uint64_t offset = 0; offset < 8; ++offset)
    {
        TestScene scene(StoreScene(kMeshInfo, {"m"}));
        std::string const record = RecordFront(0, "m") + MeshHeadBytes(3, 0, 1, 0) + VertexBytes(3) +
                                   PolygonFront({0, 1, 2}).Byte(1).U64(0).Bytes();
        auto& mesh =
            scene.WithFile("s.mesh", MeshInfoHeader(1, offset).Bytes() + record).Begin().Get<IPolygonMesh>("m");
        EXPECT_EQ(SlotOf(mesh, 0), -1);
        EXPECT_THAT(MaterialsOf(mesh), ElementsAre("(none)"));
    }
}

TEST(MeshStore, ATableBeyondTheEndOrOutOfReachIsEmpty)
{
    // Two polygons that ask for the first two materials, and a table where the header says, if the file goes that far.
    auto const materialsAt = [](std::uint64_t offset, bool isThere)
    {
        TestScene scene(StoreScene(kMeshInfo, {"m"}));
        std::string store = StoreWithMaterials({0, 1}, "");
        store.replace(0, 24, MeshInfoHeader(1, offset).Bytes());
        scene.WithFile("s.mesh", store);
        if (isThere)
        {
            std::ofstream file(scene.Folder() + "/s.mesh", std::ios::binary | std::ios::in);
            file.seekp(static_cast<std::streamoff>(offset)) << Table({"a", "b"});
            EXPECT_TRUE(file.good());
        }
        auto& mesh = scene.Begin().Get<IPolygonMesh>("m");
        EXPECT_EQ(mesh.VertexCount(), 3U) << offset;
        EXPECT_EQ(mesh.PolygonCount(), 2U) << offset;
        return MaterialsOf(mesh);
    };
    constexpr std::uint64_t kLast = 0x7FFFFFFF;
    EXPECT_THAT(materialsAt(100000, true), ElementsAre("a", "b"));
    EXPECT_THAT(materialsAt(100000, false), ElementsAre("(none)"));
    EXPECT_THAT(materialsAt(kLast, true), ElementsAre("a", "b"));
    // The file is sparse: it takes no room for what nobody wrote.
    EXPECT_THAT(materialsAt(kLast + 1, true), ElementsAre("(none)"));
    for (std::uint64_t const offset : {kLast, kLast + 1, std::uint64_t{1} << 40, ~std::uint64_t{0}})
        EXPECT_THAT(materialsAt(offset, false), ElementsAre("(none)")) << offset;
}

TEST(MeshStore, ATableInsideARecordIsReadWhereItStands)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    // The id of the record is, from its length on, a table of one id.
    std::string const id = ByteBuilder().U64(1).String("x").Bytes();
    std::string const record = RecordFront(0, id) + MeshHeadBytes(0, 0, 0, 0) + RecordFront(0, "m") +
                               MeshHeadBytes(1, 0, 1, 0) + VertexBytes(1) + PolygonFront({0}).Byte(1).U64(0).Bytes();
    auto& mesh = scene.WithFile("s.mesh", MeshInfoHeader(2, 24 + 24).Bytes() + record).Begin().Get<IPolygonMesh>("m");
    EXPECT_THAT(MaterialsOf(mesh), ElementsAre("x"));
}

TEST(MeshStore, TwoTableEntriesOfOneIdShareASetAndHaveTwoSlots)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    auto& mesh = scene.WithFile("s.mesh", StoreWithMaterials({0, 1}, Table({"a", "a"}))).Begin().Get<IPolygonMesh>("m");
    EXPECT_THAT(MaterialsOf(mesh), ElementsAre("a"));
    EXPECT_EQ(SlotOf(mesh, 0), 0);
    EXPECT_EQ(SlotOf(mesh, 1), -1);
}

TEST(MeshStore, APolygonWithoutVerticesIsEightBytesAndNoPolygon)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    std::string const record = RecordFront(0, "m") + MeshHeadBytes(3, 0, 3, 0) + VertexBytes(3) +
                               PolygonFront({0, 1, 2}).Byte(0).U64(0).Bytes() + PolygonFront({2, 1, 0}).Byte(0).Bytes();
    auto& mesh = scene.WithFile("s.mesh", MeshInfoHeader(1).Bytes() + record).Begin().Get<IPolygonMesh>("m");
    ASSERT_EQ(mesh.PolygonCount(), 2U);
    EXPECT_THAT(List(PolygonOf(mesh, 1).VertexIndices()), ElementsAre(2, 1, 0));
}

TEST(MeshStore, NormalsComeThroughAndAPolygonMayHaveNone)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    std::string const record = RecordFront(0, "m") + MeshHeadBytes(3, 1, 2, 0) + VertexBytes(3) +
                               ByteBuilder().F64(0.25).F64(-0.5).F64(1).Bytes() +
                               PolygonFront({0, 1, 2}).Byte(0).Byte(1).U64(0).U64(0).U64(0).Bytes() +
                               PolygonFront({0, 1}).Byte(0).Byte(0).Bytes();
    auto& mesh = scene.WithFile("s.mesh", MeshInfoHeader(1).Bytes() + record).Begin().Get<IPolygonMesh>("m");
    ASSERT_EQ(mesh.NormalCount(), 1U);
    EXPECT_EQ(mesh.NormalAt(0).y, -0.5);
    EXPECT_THAT(List(PolygonOf(mesh, 0).NormalIndices()), ElementsAre(0, 0, 0));
    EXPECT_EQ(List(PolygonOf(mesh, 1).NormalIndices()), kNoList);
    EXPECT_THAT(List(PolygonOf(mesh, 1).VertexIndices()), ElementsAre(0, 1));
}

TEST(MeshStore, IndicesAreNarrowedTo32Bits)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    std::string const record = RecordFront(0, "m") + MeshHeadBytes(0, 0, 1, 0) +
                               PolygonFront({(std::uint64_t{5} << 32) + 1, 0xFFFFFFFF}).Byte(0).Bytes();
    auto& mesh = scene.WithFile("s.mesh", MeshInfoHeader(1).Bytes() + record).Begin().Get<IPolygonMesh>("m");
    EXPECT_THAT(List(PolygonOf(mesh, 0).VertexIndices()), ElementsAre(1, -1));
}

TEST(MeshStore, AnyByteButZeroSaysYes)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    std::string const record =
        RecordFront(0, "m") + MeshHeadBytes(0, 0, 1, 0) + PolygonFront({0}).Byte(0x80).U64(0).Bytes();
    std::string const bytes = MeshInfoHeader(1, 24 + record.size()).Bytes() + record + Table({"a"});
    EXPECT_EQ(SlotOf(scene.WithFile("s.mesh", bytes).Begin().Get<IPolygonMesh>("m"), 0), 0);
}

TEST(MeshStore, ARecordOfAnUnknownTypeConsumesAndMakesNothing)
{
    for (std::uint64_t const type :
         {std::uint64_t{7}, std::uint64_t{8}, std::uint64_t{1} << 32, (std::uint64_t{1} << 32) + 2, ~std::uint64_t{0}})
    {
        // "c" is a curve that the store does hold: there, elements are read from it.
        std::string const bytes = MeshInfoHeader(3).Bytes() + RecordFront(type, "u") + TriangleRecord("m") +
                                  RecordFront(2, "c") + VertexBytes(2);
        TestScene asMesh(StoreScene(kMeshInfo, {"m", "u"}, {"c"}));
        asMesh.WithFile("s.mesh", bytes).Begin();
        EXPECT_EQ(asMesh.Get<IPolygonMesh>("m").VertexCount(), 3U) << type;
        EXPECT_TRUE(asMesh.Has("c")) << type;
        EXPECT_FALSE(asMesh.Has("u")) << type;
        TestScene asCurve(StoreScene(kMeshInfo, {"m"}, {"c", "u"}));
        EXPECT_TRUE(asCurve.WithFile("s.mesh", bytes).Begin().Has("c")) << type;
        EXPECT_FALSE(asCurve.Has("u")) << type;
    }
}

TEST(MeshStore, ARecordWithAnEmptyIdConsumesNothingMore)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    std::string const bytes = MeshInfoHeader(2).Bytes() + RecordFront(0, "") + TriangleRecord("m");
    EXPECT_EQ(scene.WithFile("s.mesh", bytes).Begin().Get<IPolygonMesh>("m").VertexCount(), 3U);
}

TEST(MeshStore, MeshesAndCurvesMayBeMixed)
{
    for (bool const geometryInfo : {false, true})
    {
        TestScene scene(StoreScene(geometryInfo ? kGeometryInfo : kMeshInfo, {"m", "n"}, {"c"}));
        std::string const header = geometryInfo ? GeometryInfoHeader(3).Bytes() : MeshInfoHeader(3).Bytes();
        std::string const ray = RecordFront(2, "c") + VertexBytes(2);
        scene.WithFile("s.mesh", header + TriangleRecord("m") + ray + TriangleRecord("n")).Begin();
        EXPECT_EQ(scene.Get<IPolygonMesh>("n").VertexCount(), 3U);
        EXPECT_TRUE(scene.Has("c"));
    }
}

TEST(MeshStore, AMeshAndACurveMayShareAnIdAndTheFirstOfEachStays)
{
    TempFolder folder;
    folder.Write("s", MeshInfoHeader(3).Bytes() + TriangleRecord("x") + RecordFront(2, "x") + VertexBytes(2) +
                          RecordFront(4, "x") + ByteBuilder().BoolPair(false, false).U64(0).U64(0).Bytes());
    MeshStore meshes;
    CurveStore curves;
    SideStoreReader reader(folder.PathOf("scene.xml"), nullptr, false);
    ASSERT_TRUE(reader.ReadMeshStore(L"s", meshes, curves));
    EXPECT_TRUE(meshes["x"].object);
    ASSERT_TRUE(curves["x"].object);
    EXPECT_TRUE(dynamic_cast<IRayData*>(curves["x"].object->CurveDataAt(0)));
}

TEST(MeshStore, AShortFileGivesWhatItHolds)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    std::string const bytes = MeshInfoHeader(5).Bytes() + RecordFront(0, "m") + MeshHeadBytes(3, 2, 9, 0) +
                              VertexBytes(1) + ByteBuilder().F64(7).Bytes();
    auto& mesh = scene.WithFile("s.mesh", bytes).Begin().Get<IPolygonMesh>("m");
    ASSERT_EQ(mesh.VertexCount(), 3U) << "built to the count, with zeros for what is missing";
    EXPECT_EQ(mesh.VertexAt(1).x, 7.0);
    EXPECT_EQ(mesh.VertexAt(1).y, 0.0);
    EXPECT_EQ(mesh.VertexAt(2).x, 0.0);
    EXPECT_EQ(mesh.NormalCount(), 2U);
    EXPECT_EQ(mesh.PolygonCount(), 0U);
}

TEST(MeshStore, ACountThatNoListHoldsIsALengthErrorThatLeavesTheScan)
{
    for (std::uint64_t const count :
         {std::uint64_t{1} << 31, std::uint64_t{1} << 40, std::uint64_t{1} << 63, ~std::uint64_t{0}})
    {
        TestScene scene(StoreScene(kMeshInfo, {"m"}));
        scene.WithFile("s.mesh", MeshInfoHeader(1).Bytes() + RecordFront(0, "m") + MeshHeadBytes(count, 0, 0, 0));
        try
        {
            scene.Begin();
            ADD_FAILURE() << "no exception for " << count;
        }
        catch (std::length_error const& error)
        {
            EXPECT_STREQ(error.what(), "vector<T> too long");
        }
    }
}

TEST(MeshStore, AHostileNumberOfRecordsOrPolygonsEndsWithTheFile)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    std::string const record = RecordFront(0, "m") + MeshHeadBytes(3, 0, ~std::uint64_t{0}, 0) + VertexBytes(3) +
                               PolygonFront({0, 1, 2}).Byte(0).Bytes();
    scene.WithFile("s.mesh", MeshInfoHeader(~std::uint64_t{0}).Bytes() + record).Begin();
    EXPECT_EQ(scene.Get<IPolygonMesh>("m").PolygonCount(), 1U);
}

TEST(MeshStore, APolygonThatIsCutShortHasZerosForWhatIsMissing)
{
    // Small polygons are read in another way than large ones.
    for (std::size_t const vertexCount : {3U, 20U})
    {
        TestScene scene(StoreScene(kMeshInfo, {"m"}));
        std::string const bytes = MeshInfoHeader(1).Bytes() + RecordFront(0, "m") + MeshHeadBytes(0, 0, 2, 0) +
                                  ByteBuilder().U64(vertexCount).U64(5).Raw("1234").Bytes();
        auto& mesh = scene.WithFile("s.mesh", bytes).Begin().Get<IPolygonMesh>("m");
        ASSERT_EQ(mesh.PolygonCount(), 1U);
        std::vector<int> expected(vertexCount, 0);
        expected.front() = 5;
        EXPECT_EQ(List(PolygonOf(mesh, 0).VertexIndices()), expected);
        EXPECT_EQ(SlotOf(mesh, 0), -1);
    }
}

// Bytes as a machine of the other byte order would have written them.
class OtherOrder
{
public:
    OtherOrder& U32(std::uint32_t value) { return Turned(ByteBuilder().U32(value).Bytes()); }
    OtherOrder& U64(std::uint64_t value) { return Turned(ByteBuilder().U64(value).Bytes()); }
    OtherOrder& F64(double value) { return Turned(ByteBuilder().F64(value).Bytes()); }
    OtherOrder& Byte(unsigned value) { return Turned(ByteBuilder().Byte(value).Bytes()); }
    std::string const& Bytes() const { return m_bytes; }

private:
    OtherOrder& Turned(std::string const& bytes)
    {
        m_bytes.append(bytes.rbegin(), bytes.rend());
        return *this;
    }

    std::string m_bytes;
};

TEST(MeshStore, ABodyOfTheOtherByteOrderIsReadTurnedRound)
{
    OtherOrder body;
    body.U64(1).U64(1).U64(2).U64(0).U64(1).F64(1).F64(2).F64(3).F64(0).F64(0).F64(1);
    body.U32(2).U64(1).F64(0.25).F64(0.75);
    body.U64(3).U64(7).U64(8).U64(9).Byte(1).U64(0).Byte(1).U64(0).U64(0).U64(0).Byte(1);
    for (std::uint64_t vertex = 0; vertex < 3; ++vertex)
        body.U32(1).U64(0).U64(vertex);
    body.U64(1).U64(6).Byte(0).Byte(0).Byte(0);
    TempFolder folder;
    FilePtr const file(UTF8String(folder.Write("s", body.Bytes())), "rb");
    StoreCursor store(file, !IOUtil::IsBigEndian(), StoreCursor::kWholeStore);
    StoreMemory memory(store.Remaining());
    StoreMaterials materials;
    materials.table = std::make_shared<StoreMaterials::Table const>(StoreMaterials::Table{"a"});
    materials.count = 1;
    XMLPolygonMesh mesh("m", nullptr);
    MeshRecordReader(store, materials, false, memory).Read(mesh.StoreContent());
    EXPECT_TRUE(store.HasEnded());
    EXPECT_EQ(mesh.VertexAt(0).y, 2.0);
    EXPECT_EQ(mesh.NormalAt(0).z, 1.0);
    MeshTextureVertex2D uv(0, 0);
    mesh.TextureVertexSetAt(0)->VertexAt(0, uv);
    EXPECT_EQ(uv.V(), 0.75);
    ASSERT_EQ(mesh.PolygonCount(), 2U);
    EXPECT_THAT(List(PolygonOf(mesh, 0).VertexIndices()), ElementsAre(7, 8, 9));
    EXPECT_THAT(List(PolygonOf(mesh, 0).NormalIndices()), ElementsAre(0, 0, 0));
    EXPECT_THAT(List(PolygonOf(mesh, 0).TextureVertexIndices()), ElementsAre(0, 1, 2));
    EXPECT_THAT(List(PolygonOf(mesh, 1).VertexIndices()), ElementsAre(6));
    EXPECT_THAT(MaterialsOf(mesh), ElementsAre("a"));
}

TEST(MeshStore, AHostileNumberOfMaterialsEndsWithTheFile)
{
    std::string const table = ByteBuilder().U64(~std::uint64_t{0}).String("a").String("b").Bytes();
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    auto& mesh = scene.WithFile("s.mesh", StoreWithMaterials({1}, table)).Begin().Get<IPolygonMesh>("m");
    EXPECT_THAT(MaterialsOf(mesh), ElementsAre("b"));
}

}  // namespace

}  // namespace KVR::Test
