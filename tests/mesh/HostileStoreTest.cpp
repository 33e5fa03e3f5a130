#include <gtest/gtest.h>

#include <ctime>
#include <memory>
#include <stdexcept>

#include "framework/api/ICurveData.h"
#include "geometry/XMLCurve.h"
#include "mesh/SideStoreReader.h"
#include "mesh/XMLPolygonMesh.h"
#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

// A store with everything that the layout knows.
std::string FullStore(bool geometryInfo)
{
    std::string const texture =
        geometryInfo ? VertexBytes(2)
                     : ByteBuilder().U32(2).U64(1).F64(1).F64(2).U32(3).U64(1).F64(1).F64(2).F64(3).Bytes();
    std::string mesh =
        RecordFront(0, "m") + MeshHeadBytes(3, 2, 2, geometryInfo ? 3 : 2) + VertexBytes(3) + VertexBytes(2) + texture;
    mesh += PolygonFront({0, 1, 2}).Byte(1).U64(1).Byte(1).U64(0).U64(1).U64(0).Byte(1).Bytes();
    for (int vertex = 0; vertex < 3; ++vertex)
        mesh += geometryInfo ? ByteBuilder().U64(1).Bytes() : ByteBuilder().U32(2).U64(0).U64(0).U64(1).U64(0).Bytes();
    mesh += PolygonFront({2, 1, 0}).Byte(0).Byte(0).Byte(0).Bytes();
    std::string const numbers = VertexBytes(2);
    std::string const line = numbers + ByteBuilder().F64(0).F64(1).Bytes();
    std::string const curves = RecordFront(1, "l") + line + RecordFront(2, "r") + numbers + RecordFront(3, "e") +
                               ByteBuilder().BoolPair(true, true).Bytes() + VertexBytes(3) +
                               ByteBuilder().F64(0.5).F64(0).F64(6).Bytes() + RecordFront(4, "p") +
                               ByteBuilder().BoolPair(true, false).U64(2).Bytes() + numbers +
                               ByteBuilder().U64(1).Bytes() + numbers + RecordFront(5, "c") +
                               ByteBuilder().BoolPair(false, false).U64(1).U64(0).U64(1).String("s").Bytes() + line +
                               ByteBuilder().U64(1).F64(0).F64(1).U64(2).Bytes() + RecordFront(6, "n") +
                               ByteBuilder().BoolPair(false, false).U64(4).F64(0).F64(0).F64(1).F64(1).U64(2).Bytes() +
                               numbers + ByteBuilder().U64(1).F64(1).F64(2).U64(1).F64(0).F64(1).Bytes();
    std::string const records = mesh + curves;
    std::size_t const header = geometryInfo ? 16 : 24;
    return (geometryInfo ? GeometryInfoHeader(7, header + records.size()).Bytes()
                         : MeshInfoHeader(7, header + records.size()).Bytes()) +
           records + ByteBuilder().U64(2).String("style1").String("style2").Bytes();
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
}

void Ask(XMLCurve const& curve)
{
    ICurveData const* const data = curve.CurveDataAt(0);
    if (!data)
        return;
    Position point;
    double parameter = 0.0;
    static_cast<void>(data->StartPoint_ex(point));
    static_cast<void>(data->EndPoint_ex(point));
    static_cast<void>(data->Evaluate_ex(0.5, point));
    static_cast<void>(data->Param_ex(point, parameter));
}

// Reads damaged bytes as stores; what is asserted is that everything which was built can be asked, and the time.
class StoreRun
{
public:
    void MeshStoreOf(std::string const& bytes, bool geometryInfo)
    {
        m_folder.Write("s", bytes);
        MeshStore meshes;
        CurveStore curves;
        Timed(
            [&]
            {
                SideStoreReader reader(m_folder.PathOf("scene.xml"), nullptr, geometryInfo);
                static_cast<void>(reader.ReadMeshStore(L"s", meshes, curves));
            });
        for (auto const& [id, entry] : meshes)
            Ask(*entry.object);
        for (auto const& [id, entry] : curves)
            Ask(*entry.object);
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
        Timed(
            [&]
            {
                SideStoreReader reader(m_folder.PathOf("scene.xml"), nullptr, false);
                static_cast<void>(reader.ReadMeshSegmentStore(m_folder.PathOf("s"), meshes));
            });
        for (auto const& [id, entry] : meshes)
        {
            if (entry.object)
                Ask(*entry.object);
        }
    }

    int LengthErrors() const { return m_lengthErrors; }

private:
    // Processor time, so that a busy machine does not fail the test; sanitizers multiply it.
    static double Seconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

    template <class Read>
    void Timed(Read read)
    {
#if defined(__SANITIZE_ADDRESS__)
        constexpr double kLimit = 20.0;
#else
        constexpr double kLimit = 2.0;
#endif
        double const begin = Seconds();
        try
        {
            read();
        }
        catch (std::length_error const& error)
        {
            ASSERT_STREQ(error.what(), "vector<T> too long");
            ++m_lengthErrors;
        }
        ASSERT_LT(Seconds() - begin, kLimit);
    }

    TempFolder m_folder;
    int m_lengthErrors = 0;
};

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
