// Stores that are damaged, or made to do harm: nothing crashes, takes long, takes much memory, or is lost.

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <memory>
#include <stdexcept>

#include "framework/api/ICurveData.h"
#include "framework/xml_util/StoreCursor.h"
#include "geometry/XMLCurve.h"
#include "mesh/SideStoreReader.h"
#include "mesh/XMLPolygonMesh.h"
#include "tests/framework/xml_util/AllocationMeter.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace
{

constexpr char kTooLong[] = "vector<T> too long";

// A mesh with two texture sets, of which polygons use both, one, or none.
std::string TexturedMesh(bool geometryInfo)
{
    std::string const texture =
        geometryInfo ? VertexBytes(2)
                     : ByteBuilder().U32(2).U64(1).F64(1).F64(2).U32(3).U64(1).F64(1).F64(2).F64(3).Bytes();
    std::string mesh =
        RecordFront(0, "m") + MeshHeadBytes(3, 2, 2, geometryInfo ? 3 : 2) + VertexBytes(3) + VertexBytes(2) + texture;
    mesh += PolygonFront({0, 1, 2}).Byte(1).U64(1).Byte(1).U64(0).U64(1).U64(0).Byte(1).Bytes();
    for (int vertex = 0; vertex < 3; ++vertex)
        mesh += geometryInfo ? ByteBuilder().U64(1).Bytes() : ByteBuilder().U32(2).U64(0).U64(0).U64(1).U64(0).Bytes();
    return mesh + PolygonFront({2, 1, 0}).Byte(0).Byte(0).Byte(0).Bytes();
}

// Polygons without textures, which are read in another way when they are small: with and without material and normals,
// without vertices, and a large one.
std::string PlainMesh()
{
    std::vector<std::uint64_t> const many = {0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0};
    return RecordFront(0, "p") + MeshHeadBytes(2, 1, 5, 0) + VertexBytes(3) +
           PolygonFront({0, 1, 0}).Byte(1).U64(0).Byte(1).U64(0).U64(0).U64(0).Bytes() +
           PolygonFront({0, 1}).Byte(0).Byte(0).Bytes() + PolygonFront({}).Bytes() +
           PolygonFront(many).Byte(1).U64(1).Byte(0).Bytes() + PolygonFront({1, 0}).Byte(1).U64(9).Byte(0).Bytes();
}

std::string LineBytes()
{
    return VertexBytes(2) + ByteBuilder().F64(0).F64(1).Bytes();
}

// A composite of one segment.
std::string CompositeBytes(std::uint64_t kind, std::string const& payload)
{
    return ByteBuilder()
        .BoolPair(false, false)
        .U64(1)
        .U64(0)
        .U64(kind)
        .String("s")
        .Raw(payload)
        .U64(1)
        .F64(0)
        .F64(1)
        .U64(2)
        .Bytes();
}

// A curve of each kind, and of the last ones two forms.
std::string Curves()
{
    std::string const numbers = VertexBytes(2);
    std::string const knots = ByteBuilder().BoolPair(false, true).U64(4).F64(0).F64(0).F64(1).F64(1).U64(2).Bytes();
    return RecordFront(1, "l") + LineBytes() + RecordFront(2, "r") + numbers + RecordFront(3, "e") +
           ByteBuilder().BoolPair(true, true).Bytes() + VertexBytes(3) + ByteBuilder().F64(0.5).F64(0).F64(6).Bytes() +
           RecordFront(4, "closed") + ByteBuilder().BoolPair(true, false).U64(2).Bytes() + numbers +
           ByteBuilder().U64(1).Bytes() + numbers + RecordFront(4, "open") +
           ByteBuilder().BoolPair(false, false).U64(2).Bytes() + numbers + ByteBuilder().U64(0).Bytes() +
           RecordFront(5, "c") + CompositeBytes(1, LineBytes()) + RecordFront(5, "nested") +
           CompositeBytes(5, CompositeBytes(2, numbers)) + RecordFront(6, "rational") + knots + numbers +
           ByteBuilder().U64(1).F64(1).F64(2).U64(1).F64(0).F64(1).Bytes() + RecordFront(6, "plain") + knots + numbers +
           ByteBuilder().U64(0).U64(1).F64(0).F64(1).Bytes();
}

// A store with everything that the layout knows.
std::string FullStore(bool geometryInfo)
{
    std::string const records = TexturedMesh(geometryInfo) + PlainMesh() + Curves() + RecordFront(7, "unknown");
    std::size_t const header = geometryInfo ? 16 : 24;
    return (geometryInfo ? GeometryInfoHeader(12, header + records.size()).Bytes()
                         : MeshInfoHeader(12, header + records.size()).Bytes()) +
           records + ByteBuilder().U64(3).String("style1").String("").String("style2").Bytes();
}

std::string FullSegments()
{
    return ByteBuilder()
        .U64(2)
        .String("m")
        .U64(2)
        .U64(1)
        .U64(2)
        .Byte(1)
        .Byte(0)
        .U64(2)
        .U64(0)
        .U64(1)
        .U64(1)
        .U64(0)
        .U64(3)
        .U64(0)
        .U64(1)
        .U64(2)
        .String("n")
        .U64(0)
        .U64(0)
        .U64(0)
        .Bytes();
}

// Asks everything that a mesh answers; the answers themselves do not matter.
void Ask(XMLPolygonMesh const& mesh)
{
    for (unsigned long i = 0; i < mesh.VertexCount(); ++i)
        mesh.VertexAt(i);
    for (unsigned long i = 0; i < mesh.TextureVertexSetCount(); ++i)
        ASSERT_GT(mesh.TextureVertexSetAt(i)->VertexCount(), 0U);
    for (unsigned long i = 0; i < mesh.PolygonCount(); ++i)
    {
        EditablePolygon const& polygon = PolygonOf(mesh, i);
        ASSERT_EQ(polygon.VertexIndices().count, polygon.VertexCount());
        List(polygon.NormalIndices());
        List(polygon.TextureSetIndices());
        List(polygon.TextureVertexIndices());
        SlotOf(mesh, i);
    }
    for (unsigned long i = 0; i < mesh.FaceSegmentCount(); ++i)
    {
        FaceSegmentInfo segment;
        ASSERT_EQ(mesh.FaceSegmentAt(i, segment), kIsValueSpecified_Yes);
    }
    for (unsigned long i = 0; i < mesh.EdgeSegmentCount(); ++i)
    {
        EdgeSegmentInfo segment;
        ASSERT_EQ(mesh.EdgeSegmentInfoAt(i, segment), kIsValueSpecified_Yes);
    }
}

void AskLists(ICurveData& data)
{
    std::uint32_t count = 0;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double weight = 0.0;
    if (auto* const polyline = dynamic_cast<IPolyLineData*>(&data))
    {
        polyline->PointCount(count);
        for (std::uint32_t i = 0; i < count; ++i)
            polyline->Point(static_cast<int>(i), x, y, z);
        ASSERT_THROW(polyline->Point(static_cast<int>(count), x, y, z), std::out_of_range);
    }
    if (auto* const nurbs = dynamic_cast<INurbsCurveData*>(&data))
    {
        nurbs->KnotCount(count);
        for (std::uint32_t i = 0; i < count; ++i)
            nurbs->Knot(static_cast<int>(i), x);
        nurbs->ControlPointCount(count);
        for (std::uint32_t i = 0; i < count; ++i)
            nurbs->ControlPoint(static_cast<int>(i), x, y, z, weight);
    }
    if (auto* const composite = dynamic_cast<ICompositeCurveData*>(&data))
    {
        bool flag = false;
        std::uint32_t value = 0;
        composite->SegmentCount(count);
        for (std::uint32_t i = 0; i < count; ++i)
        {
            composite->SegmentFlag(static_cast<int>(i), flag);
            composite->SegmentInterval(static_cast<int>(i), x, y);
            composite->SegmentValue(static_cast<int>(i), value);
        }
    }
}

void Ask(XMLCurve const& curve)
{
    ICurveData* const data = curve.CurveDataAt(0);
    if (!data)
        return;
    AskLists(*data);
    Position point;
    double parameter = 0.0;
    static_cast<void>(data->StartPoint_ex(point));
    static_cast<void>(data->EndPoint_ex(point));
    static_cast<void>(data->Evaluate_ex(0.5, point));
    static_cast<void>(data->Param_ex(point, parameter));
}

// Reads bytes as stores, within bounds of time and memory; everything that was built can be asked.
class StoreRun
{
public:
    void MeshStoreOf(std::string const& bytes, bool geometryInfo)
    {
        m_folder.Write("s", bytes);
        MeshStore meshes;
        CurveStore curves;
        Bounded(bytes.size(),
                [&]
                {
                    SideStoreReader reader(m_folder.PathOf("scene.xml"), nullptr, geometryInfo);
                    static_cast<void>(reader.ReadMeshStore(L"s", meshes, curves));
                });
        InTime(
            [&]
            {
                for (auto const& [id, entry] : meshes)
                    Ask(*entry.object);
                for (auto const& [id, entry] : curves)
                    Ask(*entry.object);
            });
        m_objects = meshes.size() + curves.size();
    }

    void SegmentStoreOf(std::string const& bytes)
    {
        m_folder.Write("s", bytes);
        MeshStore meshes;
        for (char const* const id : {"m", "n"})
        {
            meshes[id].owned = std::make_unique<XMLPolygonMesh>(UTF8String(id), nullptr);
            meshes[id].object = meshes[id].owned.get();
        }
        Bounded(bytes.size(),
                [&]
                {
                    SideStoreReader reader(m_folder.PathOf("scene.xml"), nullptr, false);
                    static_cast<void>(reader.ReadMeshSegmentStore(m_folder.PathOf("s"), meshes));
                });
        m_objects = 0;
        for (auto const& [id, entry] : meshes)
        {
            if (!entry.object)
                continue;
            Ask(*entry.object);
            m_objects += entry.object->FaceSegmentCount() + entry.object->EdgeSegmentCount();
        }
    }

    int LengthErrors() const { return m_lengthErrors; }
    /// What the last store built: meshes and curves, or segments.
    std::size_t Objects() const { return m_objects; }

private:
    // Processor time, so that a busy machine does not fail the test; sanitizers multiply it.
    static constexpr double kMostSeconds = kIsSanitized ? 20.0 : 2.0;
    // An object without content takes a multiple of its record; while a list is built a copy of it may exist.
    static constexpr std::size_t kMostTimesTheSize = 20;
    static constexpr std::size_t kMostOnClaim = 2 * StoreCursor::kClaimLimit + 4 * 1024 * 1024;

    static double Seconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

    template <class Action>
    static void InTime(Action action)
    {
        double const begin = Seconds();
        action();
        ASSERT_LT(Seconds() - begin, kMostSeconds);
    }

    template <class Read>
    void Bounded(std::size_t size, Read read)
    {
        AllocationMeter const meter;
        InTime(
            [&]
            {
                try
                {
                    read();
                }
                catch (std::length_error const& error)
                {
                    ASSERT_STREQ(error.what(), kTooLong);
                    ++m_lengthErrors;
                }
            });
        ASSERT_LT(static_cast<std::size_t>(meter.Peak()), kMostTimesTheSize * size + kMostOnClaim);
    }

    TempFolder m_folder;
    int m_lengthErrors = 0;
    std::size_t m_objects = 0;
};

TEST(HostileStore, UndamagedBothAreWhole)
{
    StoreRun run;
    for (bool const geometryInfo : {false, true})
    {
        run.MeshStoreOf(FullStore(geometryInfo), geometryInfo);
        EXPECT_EQ(run.Objects(), 11U);
    }
    run.SegmentStoreOf(FullSegments());
    EXPECT_EQ(run.Objects(), 3U);
    EXPECT_EQ(run.LengthErrors(), 0);
}

TEST(HostileStore, EveryPrefixIsReadWithoutHarm)
{
    StoreRun run;
    for (bool const geometryInfo : {false, true})
    {
        std::string const store = FullStore(geometryInfo);
        for (std::size_t size = 0; size <= store.size(); ++size)
            run.MeshStoreOf(store.substr(0, size), geometryInfo);
    }
    std::string const segments = FullSegments();
    for (std::size_t size = 0; size <= segments.size(); ++size)
        run.SegmentStoreOf(segments.substr(0, size));
    EXPECT_EQ(run.LengthErrors(), 0) << "a cut store claims no more than the limit";
}

TEST(HostileStore, EveryByteFlippedToFourValuesIsReadWithoutHarm)
{
    StoreRun run;
    for (bool const geometryInfo : {false, true})
    {
        std::string const store = FullStore(geometryInfo);
        for (std::size_t at = 0; at < store.size(); ++at)
        {
            for (int const flip : {0x01, 0x40, 0x80, 0xFF})
            {
                std::string damaged = store;
                damaged[at] = static_cast<char>(damaged[at] ^ flip);
                run.MeshStoreOf(damaged, geometryInfo);
            }
        }
    }
    std::string const segments = FullSegments();
    for (std::size_t at = 0; at < segments.size(); ++at)
    {
        for (int const flip : {0x01, 0x40, 0x80, 0xFF})
        {
            std::string damaged = segments;
            damaged[at] = static_cast<char>(damaged[at] ^ flip);
            run.SegmentStoreOf(damaged);
        }
    }
    EXPECT_GT(run.LengthErrors(), 0);
}

TEST(HostileStore, EveryFieldOfEightBytesMadeHugeIsReadWithoutHarm)
{
    StoreRun run;
    for (std::uint64_t const count : {std::uint64_t{1} << 31, std::uint64_t{1} << 32, std::uint64_t{1} << 40,
                                      std::uint64_t{1} << 60, std::uint64_t{1} << 63, ~std::uint64_t{0}})
    {
        std::string const bytes = ByteBuilder().U64(count).Bytes();
        for (bool const geometryInfo : {false, true})
        {
            std::string const store = FullStore(geometryInfo);
            for (std::size_t at = 0; at + bytes.size() <= store.size(); ++at)
            {
                std::string damaged = store;
                run.MeshStoreOf(damaged.replace(at, bytes.size(), bytes), geometryInfo);
            }
        }
        std::string const segments = FullSegments();
        for (std::size_t at = 0; at + bytes.size() <= segments.size(); ++at)
        {
            std::string damaged = segments;
            run.SegmentStoreOf(damaged.replace(at, bytes.size(), bytes));
        }
    }
    EXPECT_GT(run.LengthErrors(), 0);
}

// A store of one mesh "m" with the given body.
std::string MeshStoreOf(std::string const& body)
{
    return MeshInfoHeader(1).Bytes() + RecordFront(0, "m") + body;
}

std::string CurveStoreOf(std::uint64_t kind, std::string const& payload)
{
    return MeshInfoHeader(1).Bytes() + RecordFront(kind, "c") + payload;
}

TEST(HostileStore, ListsThatAreClaimedUpToTheLimitAreBuiltInTime)
{
    std::uint64_t const limit = StoreCursor::kClaimLimit;
    ByteBuilder const flags = ByteBuilder().BoolPair(true, false);
    std::string const set = ByteBuilder().U32(2).U64(1).F64(0).F64(0).Bytes();
    std::string const stores[] = {
        MeshStoreOf(MeshHeadBytes(limit / 24, 0, 0, 0)),
        MeshStoreOf(MeshHeadBytes(0, limit / 24, 0, 0)),
        MeshStoreOf(MeshHeadBytes(0, 0, 1, 0)) + ByteBuilder().U64(limit / 4).Bytes(),
        MeshStoreOf(MeshHeadBytes(0, 0, 0, 1)) + ByteBuilder().U32(2).U64(limit / 16).Bytes(),
        MeshStoreOf(MeshHeadBytes(0, 0, 0, 1)) + ByteBuilder().U32(3).U64(limit / 24).Bytes(),
        MeshStoreOf(MeshHeadBytes(0, 0, 1, 1)) + set +
            PolygonFront({0}).Byte(0).Byte(1).U32(limit / 8 - 2).U64(0).U64(0).Bytes(),
        CurveStoreOf(4, flags.Bytes() + ByteBuilder().U64(limit / 24).Bytes()),
        CurveStoreOf(5, flags.Bytes() + ByteBuilder().U64(limit / 24).Bytes()),
        CurveStoreOf(6, flags.Bytes() + ByteBuilder().U64(limit / 8).Bytes()),
    };
    StoreRun run;
    for (std::string const& store : stores)
    {
        run.MeshStoreOf(store, false);
        EXPECT_EQ(run.Objects(), 1U);
    }
    auto const front = [](std::uint64_t faces, std::uint64_t edges, std::uint64_t visible)
    { return ByteBuilder().U64(1).String("m").U64(faces).U64(edges).U64(visible); };
    run.SegmentStoreOf(front(limit / sizeof(FaceSegmentInfo), 0, 0).Bytes());
    run.SegmentStoreOf(front(0, limit / sizeof(EdgeSegmentInfo), 0).Bytes());
    run.SegmentStoreOf(front(0, 0, limit).Bytes());
    run.SegmentStoreOf(front(1, 0, 0).U64(limit / 4).Bytes());
    run.SegmentStoreOf(front(0, 1, 0).U64(limit / 4).Bytes());
    EXPECT_EQ(run.LengthErrors(), 0);
}

TEST(HostileStore, ManyRecordsOfOneMeshTakeTimeInProportion)
{
    constexpr int kRecords = 200'000;
    StoreRun run;
    ByteBuilder bytes;
    bytes.U64(kRecords);
    for (int i = 0; i < kRecords; ++i)
        bytes.String("m").U64(1).U64(1).U64(0).U64(0).U64(0);
    run.SegmentStoreOf(bytes.Bytes());
    EXPECT_EQ(run.Objects(), 2U * kRecords);
}

TEST(HostileStore, ManyObjectsWithoutContentTakeMemoryInProportion)
{
    constexpr int kRecords = 50'000;
    StoreRun run;
    std::string const emptyCurve = ByteBuilder().BoolPair(false, false).U64(0).Bytes();
    std::string store = MeshInfoHeader(2 * kRecords).Bytes();
    for (int i = 0; i < kRecords; ++i)
        store += RecordFront(0, std::to_string(i)) + MeshHeadBytes(0, 0, 0, 0) + RecordFront(5, std::to_string(i)) +
                 emptyCurve;
    run.MeshStoreOf(store, false);
    EXPECT_EQ(run.Objects(), 2U * kRecords);

    std::string polygons;
    for (int i = 0; i < kRecords; ++i)
        polygons += PolygonFront({0}).Byte(0).Byte(1).U32(0).Bytes();
    run.MeshStoreOf(MeshStoreOf(MeshHeadBytes(0, 0, kRecords, 1)) + ByteBuilder().U32(2).U64(0).Bytes() + polygons,
                    false);
    EXPECT_EQ(run.Objects(), 1U);
}

TEST(HostileStore, CompositesNestedWithoutEndTakeTimeInProportion)
{
    StoreRun run;
    for (std::uint64_t const segments : {1, 2})
    {
        ByteBuilder bytes;
        for (int level = 0; level < 200'000; ++level)
            bytes.BoolPair(false, false).U64(segments).U64(0).U64(5).String("x");
        run.MeshStoreOf(CurveStoreOf(5, bytes.Bytes()), false);
        EXPECT_EQ(run.Objects(), 1U);
    }
}

TEST(HostileStore, ThePointsOfACurveOfManySpansAndAHighDegreeAreFoundInTime)
{
    StoreRun run;
    for (std::uint64_t const pointCount : {100, 1000, 10'000})
    {
        constexpr std::uint64_t kDegree = 64;
        ByteBuilder bytes;
        bytes.BoolPair(false, false).U64(pointCount + kDegree + 1);
        for (std::uint64_t i = 0; i < pointCount + kDegree + 1; ++i)
            bytes.F64(static_cast<double>(i));
        bytes.U64(pointCount);
        for (std::uint64_t i = 0; i < pointCount; ++i)
            bytes.F64(std::cos(static_cast<double>(i))).F64(std::sin(static_cast<double>(i))).F64(0);
        bytes.U64(0).U64(kDegree).F64(kDegree).F64(static_cast<double>(pointCount));
        run.MeshStoreOf(CurveStoreOf(6, bytes.Bytes()), false);
        EXPECT_EQ(run.Objects(), 1U);
    }
}

TEST(HostileStore, WhatWasBuiltBeforeALengthErrorStays)
{
    StoreRun run;
    for (std::uint64_t const count : {std::uint64_t{1} << 32, std::uint64_t{1} << 63, ~std::uint64_t{0}})
    {
        run.MeshStoreOf(MeshInfoHeader(3).Bytes() + TriangleRecord("a") + RecordFront(2, "r") + VertexBytes(2) +
                            RecordFront(0, "m") + MeshHeadBytes(count, 0, 0, 0),
                        false);
        EXPECT_EQ(run.Objects(), 2U) << count;
        // The second list of "n" is hostile; the segment in front of it is whole.
        run.SegmentStoreOf(ByteBuilder().U64(2).String("m").U64(2).U64(0).U64(0).U64(0).U64(0).Bytes() +
                           ByteBuilder().String("n").U64(2).U64(0).U64(0).U64(0).U64(count).Bytes());
        EXPECT_EQ(run.Objects(), 3U) << count;
    }
    EXPECT_EQ(run.LengthErrors(), 6);
}

TEST(HostileStore, AStoreThatIsNoRegularFileCannotBeOpened)
{
    TempFolder folder;
    folder.MakeFolder("d");
    folder.MakeFifo("f");
    for (wchar_t const* const name : {L"d", L"f", L"missing"})
    {
        MeshStore meshes;
        CurveStore curves;
        SideStoreReader reader(folder.PathOf("scene.xml"), nullptr, false);
        EXPECT_FALSE(reader.ReadMeshStore(name, meshes, curves));
        meshes["m"];
        EXPECT_FALSE(reader.ReadMeshSegmentStore(folder.PathOf(Text(UTF16String(name))), meshes));
    }
}

}  // namespace

}  // namespace KVR::Test
