// The examples of docs/formats.md, byte by byte: the writers write them, and they are what a reader takes them for.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>

#include <cmath>
#include <fstream>
#include <sstream>
#include <string>

#include "authoring/KernelStoreWriter.h"
#include "authoring/MeshStoreWriter.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/Shapes.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

using namespace Authoring;
using testing::ElementsAre;

bool IsHexLine(std::string const& line)
{
    return line.size() > 14 && line.starts_with("    ") && line.substr(12, 2) == ": " &&
           line.find_first_not_of("0123456789abcdef", 4) == 12;
}

// The bytes of the lines "offset: bytes   words" that follow the first mention of the file.
std::string DocumentedBytes(std::string const& file)
{
    std::ifstream document(KVR_DOCS_DIR "/formats.md");
    std::string line;
    while (std::getline(document, line) && line.find("`" + file + "`") == std::string::npos)
    {
    }
    while (std::getline(document, line) && !IsHexLine(line))
    {
    }
    std::string bytes;
    do
    {
        EXPECT_EQ(std::stoul(line.substr(4, 8), nullptr, 16), bytes.size()) << line;
        // Eight bytes at most, and then the words.
        std::istringstream fields(line.substr(14, 24));
        for (std::string field; fields >> field;)
            bytes.push_back(static_cast<char>(std::stoi(field, nullptr, 16)));
    } while (std::getline(document, line) && IsHexLine(line));
    return bytes;
}

std::string Content(TempFolder const& folder, std::string const& name)
{
    std::ifstream file(folder.NarrowPathOf(name), std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

constexpr double kCorners[] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
constexpr std::uint64_t kTriangle[] = {0, 1, 2};

LineRecord Line()
{
    return {{1, 2, 3}, {0, 0, 1}, 0, 5};
}

CompositeSegment Segment(char const* id, CurveRecord record, std::uint32_t flag, double start, double end,
                         std::uint32_t value)
{
    return {UTF8String(id), std::make_shared<CurveRecord const>(std::move(record)), flag, start, end, value};
}

template <class Data>
Data& DataOf(TestScene& scene, char const* id)
{
    return dynamic_cast<Data&>(*scene.Get<ICurve>(id).CurveDataAt(0));
}

void ExpectEnds(TestScene& scene, char const* id, Triple const& start, Triple const& end)
{
    auto const& curve = DataOf<ICurveData>(scene, id);
    Position point;
    ASSERT_EQ(curve.StartPoint_ex(point), kDataReturnCode_Ok) << id;
    EXPECT_EQ((Triple{point.X(), point.Y(), point.Z()}), start) << id;
    ASSERT_EQ(curve.EndPoint_ex(point), kDataReturnCode_Ok) << id;
    EXPECT_NEAR(point.X(), end[0], 1e-12) << id;
    EXPECT_NEAR(point.Y(), end[1], 1e-12) << id;
    EXPECT_NEAR(point.Z(), end[2], 1e-12) << id;
}

TEST(DocumentedBytes, AMeshStoreIsAsDescribed)
{
    TempFolder folder;
    MeshStoreWriter writer(UTF16String(UTF8String(folder.NarrowPathOf("plate.mesh"))), MeshStoreLayout::kMeshInfo);
    std::uint64_t const steel = writer.AddMaterial(UTF8String("steel"));
    MeshHead head;
    head.vertexCount = 3;
    head.normalCount = 1;
    head.polygonCount = 1;
    head.textureSetCount = 1;
    writer.BeginMesh(UTF8String("plate"), head);
    writer.Vertices(kCorners);
    writer.Normals(std::array<double, 3>{0, 0, 1});
    writer.TextureSet(2, std::array<double, 6>{0, 0, 1, 0, 0, 1});
    std::uint64_t const normals[] = {0, 0, 0};
    TextureReference const textures[] = {{0, 0}, {0, 1}, {0, 2}};
    writer.Polygon({kTriangle, steel, normals, textures});
    writer.EndMesh();
    writer.Finish();
    EXPECT_EQ(Content(folder, "plate.mesh"), DocumentedBytes("plate.mesh"));

    TestScene scene(StoreScene(kMeshInfo, {"plate"}));
    auto& mesh = scene.WithFile("s.mesh", DocumentedBytes("plate.mesh")).Begin().Get<IPolygonMesh>("plate");
    EXPECT_EQ(mesh.VertexAt(1).x, 1.0);
    EXPECT_EQ(mesh.NormalAt(0).z, 1.0);
    EXPECT_THAT(List(PolygonOf(mesh, 0).TextureVertexIndices()), ElementsAre(0, 1, 2));
    IdSetSet materials;
    ASSERT_EQ(mesh.PolygonMaterials(materials), kIsValueSpecified_Yes);
    EXPECT_EQ(materials.At(0).At(0), UTF8String("steel"));
}

TEST(DocumentedBytes, AGeometryStoreIsAsDescribed)
{
    TempFolder folder;
    MeshStoreWriter writer(UTF16String(UTF8String(folder.NarrowPathOf("wires.geometry"))),
                           MeshStoreLayout::kGeometryInfo);
    MeshHead head;
    head.vertexCount = 3;
    head.polygonCount = 1;
    head.textureSetCount = 1;
    head.textureVertexCount = 2;
    writer.BeginMesh(UTF8String("leaf"), head);
    writer.Vertices(kCorners);
    writer.TextureSet(2, std::array<double, 4>{0, 0, 1, 1});
    TextureReference const textures[] = {{0, 0}, {0, 1}, {0, 1}};
    writer.Polygon({kTriangle, std::nullopt, {}, textures});
    writer.EndMesh();
    RayRecord const ray{{0, 0, 0}, {1, 0, 0}};
    writer.Curve(UTF8String("line"), {Line()});
    writer.Curve(UTF8String("ray"), {ray});
    writer.Curve(UTF8String("arc"), {EllipseRecord{false, false, {0, 0, 0}, {2, 0, 0}, {0, 0, 1}, 0.5, 0, 1.5}});
    writer.Curve(UTF8String("path"),
                 {PolylineRecord{false, false, {{0, 0, 0}, {1, 1, 0}}, std::vector<Triple>{{1, 0, 0}, {0, 1, 0}}}});
    writer.Curve(
        UTF8String("both"),
        {CompositeRecord{false, false, {Segment("a", {Line()}, 1, 0, 5, 0), Segment("b", {ray}, 0, 5, 6, 1)}}});
    writer.Curve(UTF8String("bow"), {NurbsRecord{false,
                                                 false,
                                                 {0, 0, 0, 1, 1, 1},
                                                 {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}},
                                                 std::vector<double>{1, 0.5, 1},
                                                 2,
                                                 0,
                                                 1}});
    writer.Finish();
    EXPECT_EQ(Content(folder, "wires.geometry"), DocumentedBytes("wires.geometry"));

    TestScene scene(std::string("<Scene>") + kGeometryInfo +
                    "<IPolygonMesh ID='leaf'/><ICurve ID='line'/><ICurve ID='ray'/><ICurve ID='arc'/>"
                    "<ICurve ID='path'/><ICurve ID='both'/><ICurve ID='bow'/></Scene>");
    scene.WithFile("s.mesh", DocumentedBytes("wires.geometry")).Begin();
    auto& leaf = scene.Get<IPolygonMesh>("leaf");
    ASSERT_EQ(leaf.PolygonCount(), 1U);
    EXPECT_THAT(List(PolygonOf(leaf, 0).VertexIndices()), ElementsAre(0, 1, 2));
    EXPECT_THAT(List(PolygonOf(leaf, 0).TextureVertexIndices()), ElementsAre(0, 1, 1));
    EXPECT_EQ(SlotOf(leaf, 0), -1);
    ExpectEnds(scene, "line", {1, 2, 3}, {1, 2, 8});
    ExpectEnds(scene, "arc", {2, 0, 0}, {2 * std::cos(1.5), std::sin(1.5), 0});
    ExpectEnds(scene, "path", {0, 0, 0}, {1, 1, 0});
    ExpectEnds(scene, "bow", {0, 0, 0}, {2, 0, 0});
    double x = 0;
    double y = 0;
    double z = 0;
    DataOf<IRayData>(scene, "ray").Direction(x, y, z);
    EXPECT_EQ(x, 1.0);
    DataOf<IPolyLineData>(scene, "path").VectorAt(1, x, y, z);
    EXPECT_EQ(y, 1.0);
    auto const& both = DataOf<ICompositeCurveData>(scene, "both");
    std::uint32_t value = 0;
    both.SegmentValue(1, value);
    EXPECT_EQ(value, 1U);
    bool flag = false;
    both.SegmentFlag(0, flag);
    EXPECT_TRUE(flag);
    both.SegmentInterval(1, x, y);
    EXPECT_EQ(x, 5.0);
    EXPECT_EQ(y, 6.0);
    double weight = 0;
    DataOf<INurbsCurveData>(scene, "bow").ControlPoint(1, x, y, z, weight);
    EXPECT_EQ(weight, 0.5);
}

TEST(DocumentedBytes, ASegmentStoreIsAsDescribed)
{
    TempFolder folder;
    SegmentStoreWriter writer(UTF16String(UTF8String(folder.NarrowPathOf("plate.segments"))));
    SegmentStoreWriter::Indices const faces[] = {{0}};
    SegmentStoreWriter::Indices const edges[] = {{0, 1}};
    writer.Mesh(UTF8String("plate"), faces, edges, {false});
    writer.Finish();
    EXPECT_EQ(Content(folder, "plate.segments"), DocumentedBytes("plate.segments"));

    TestScene scene(StoreScene(std::string(kMeshInfo) + kSegmentInfo, {"plate"}));
    scene.WithFile("s.mesh", DocumentedBytes("plate.mesh")).WithFile("s.seg", DocumentedBytes("plate.segments"));
    auto& mesh = scene.Begin().Get<IPolygonMesh>("plate");
    FaceSegmentInfo face;
    ASSERT_EQ(mesh.FaceSegmentCount(), 1U);
    ASSERT_EQ(mesh.FaceSegmentAt(0, face), kIsValueSpecified_Yes);
    EXPECT_FALSE(face.IsVisible());
    EXPECT_THAT(face.PolygonIndices().Indices(), ElementsAre(0U));
    EdgeSegmentInfo edge;
    ASSERT_EQ(mesh.EdgeSegmentCount(), 1U);
    ASSERT_EQ(mesh.EdgeSegmentInfoAt(0, edge), kIsValueSpecified_Yes);
    EXPECT_THAT(edge.VertexIndices().Indices(), ElementsAre(0, 1));
}

TEST(DocumentedBytes, HeadAndTableOfAKernelStoreAreAsDescribed)
{
    TempFolder folder;
    KernelStoreWriter writer(UTF16String(UTF8String(folder.NarrowPathOf("lid.sab"))), KernelStoreForm::kBinary);
    writer.Body(UTF8String("lid"), BoxShape(1, 2, 3), {{5, UTF8String("top")}});
    writer.Finish();
    std::string const written = Content(folder, "lid.sab");
    std::string const documented = DocumentedBytes("lid.sab");
    constexpr std::size_t kDigestAt = 16;
    constexpr std::size_t kContentAt = 32;
    ASSERT_GT(written.size(), documented.size());
    EXPECT_EQ(written.substr(0, kDigestAt), documented.substr(0, kDigestAt));
    EXPECT_EQ(written.substr(kContentAt, documented.size() - kContentAt), documented.substr(kContentAt));
    // Digest and size as another program would write them.
    EXPECT_EQ(written, WithHead(written.substr(kContentAt), false));
}

}  // namespace

}  // namespace KVR::Test
