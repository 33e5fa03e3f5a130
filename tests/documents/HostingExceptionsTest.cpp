// The table of exceptions in docs/hosting.md, row by row.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "authoring/MeshStoreWriter.h"
#include "tests/documents/ThrownBy.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

constexpr unsigned long long kFar = 1'000'000'000ULL;

std::string InvalidChildOf(char const* name)
{
    return std::string("GeneralException: Invalid index to child of ") + name + ".";
}

// A scene with a mesh "m" that has a triangle, a normal, and texture coordinates of two and of three dimensions.
TestScene& WithDetailedMesh(TestScene& scene)
{
    using namespace Authoring;
    MeshStoreWriter store(Wide((scene.Folder() + "/s.mesh").c_str()), MeshStoreLayout::kMeshInfo);
    double const numbers[] = {0, 0, 1, 1, 0, 0, 0, 1, 0};
    std::uint64_t const corners[] = {0, 1, 2};
    std::span const all(numbers);
    store.BeginMesh("m", {.vertexCount = 3, .normalCount = 1, .polygonCount = 1, .textureSetCount = 2});
    store.Vertices(all);
    store.Normals(all.first(3));
    store.TextureSet(2, all.first(2));
    store.TextureSet(3, all.first(3));
    store.Polygon({.vertices = corners, .material = {}, .normals = {}, .textures = {}});
    store.EndMesh();
    store.Finish();
    return scene.Begin();
}

// The scene that has one of every kind of object.
class HostingExceptions : public testing::Test
{
protected:
    HostingExceptions()
        : m_producer(UTF16String{UTF8String((std::string(KVR_EXAMPLES_DIR) + "/complete/complete.xml").c_str())},
                     nullptr)
    {
        m_producer.BeginProcess(IdSet(), nullptr, nullptr);
    }

    template <class Interface>
    Interface& Get(char const* id)
    {
        auto* const object = dynamic_cast<Interface*>(m_producer.Load(id));
        if (!object)
            throw std::runtime_error(std::string("no such object: ") + id);
        return *object;
    }

    // A ChildAt whose index may equal the count and then reaches the list.
    template <class Interface>
    void ExpectLooseChildAt(char const* id, char const* name)
    {
        Interface& owner = Get<Interface>(id);
        ASSERT_GT(owner.ChildCount(), 0U) << id;
        EXPECT_EQ(ThrownBy([&] { owner.ChildAt(owner.ChildCount() - 1); }), kNothing) << id;
        EXPECT_EQ(ThrownBy([&] { owner.ChildAt(owner.ChildCount()); }), kSubscript) << id;
        EXPECT_EQ(ThrownBy([&] { owner.ChildAt(owner.ChildCount() + 1); }), InvalidChildOf(name)) << id;
        EXPECT_EQ(ThrownBy([&] { owner.ChildAt(~0ULL); }), InvalidChildOf(name)) << id;
    }

    // A getter that takes every index below the count and throws at all others.
    template <class Getter>
    void ExpectSubscript(char const* what, unsigned long long count, Getter const& getter)
    {
        ASSERT_GT(count, 0U) << what;
        EXPECT_EQ(ThrownBy([&] { getter(count - 1); }), kNothing) << what;
        EXPECT_EQ(ThrownBy([&] { getter(count); }), kSubscript) << what;
        EXPECT_EQ(ThrownBy([&] { getter(kFar); }), kSubscript) << what;
    }

    XMLProducer m_producer;
};

}  // namespace

TEST(HostingExceptionsOfBeginProcess, AFileExceptionWhenTheSceneCannotBeParsed)
{
    TestScene broken("<Scene");
    EXPECT_EQ(ThrownBy([&] { broken.Begin(); }), "FileException: 0 " + broken.Path() + " 2");
    TestScene missing("<Scene/>");
    std::filesystem::remove(missing.Path());
    EXPECT_EQ(ThrownBy([&] { missing.Begin(); }), "FileException: 0 " + missing.Path() + " 2");
    EXPECT_EQ(kComponentRole_Producer, 2);
}

TEST(HostingExceptionsOfBeginProcess, AFileExceptionWhenABlobIsMissingOrShort)
{
    constexpr char kScene[] =
        R"(<S><IUniverse><CustomData><CustomDataItem Type="8" Key="k" Path="k.blob" BlobBufferSize="4"/></CustomData>
           </IUniverse></S>)";
    TestScene missing(kScene);
    EXPECT_EQ(ThrownBy([&] { missing.Begin(); }), "FileException: 0 " + missing.Folder() + "/k.blob no reporter");
    TestScene shorter(kScene);
    shorter.WithFile("k.blob", "abc");
    EXPECT_EQ(ThrownBy([&] { shorter.Begin(); }), "FileException: 0 " + shorter.Folder() + "/k.blob no reporter");
    TestScene whole(kScene);
    whole.WithFile("k.blob", "abcd");
    EXPECT_EQ(ThrownBy([&] { whole.Begin(); }), kNothing);
}

TEST(HostingExceptionsOfBeginProcess, ALengthErrorWhenAStoreClaimsFarMoreThanItHolds)
{
    constexpr char kTooLong[] = "std::length_error: vector<T> too long";
    constexpr std::uint64_t kMany = std::uint64_t{1} << 40;
    TestScene mesh(StoreScene(kMeshInfo, {"m"}));
    mesh.WithFile("s.mesh", MeshInfoHeader(1).Bytes() + RecordFront(0, "m") + MeshHeadBytes(kMany, 0, 0, 0));
    EXPECT_EQ(ThrownBy([&] { mesh.Begin(); }), kTooLong);
    TestScene segments(StoreScene(std::string(kMeshInfo) + kSegmentInfo, {"m"}));
    segments.WithFile("s.mesh", MeshInfoHeader(1).Bytes() + TriangleRecord("m"));
    segments.WithFile("s.seg", ByteBuilder().U64(1).String("m").U64(kMany).U64(0).U64(0));
    EXPECT_EQ(ThrownBy([&] { segments.Begin(); }), kTooLong);
}

TEST(HostingExceptionsOfRootObjectId, AGeneralExceptionWithoutARootBeforeReadingAndAfterTheEnd)
{
    constexpr char kNoRoot[] = "GeneralException: Could not find the root object id.";
    TestScene none("<Scene/>");
    EXPECT_EQ(ThrownBy([&] { none.Begin().Producer().RootObjectId(); }), kNoRoot);
    TestScene one("<Scene><IFile ID='f'/></Scene>");
    EXPECT_EQ(ThrownBy([&] { one.Producer().RootObjectId(); }), kNoRoot);
    EXPECT_EQ(ThrownBy([&] { one.Begin().Producer().RootObjectId(); }), kNothing);
    one.Producer().EndProcess();
    EXPECT_EQ(ThrownBy([&] { one.Producer().RootObjectId(); }), kNoRoot);
}

TEST_F(HostingExceptions, ChildAtOfAFileSetOrNote)
{
    ExpectLooseChildAt<IFile>("file", "XMLFile");
    ExpectLooseChildAt<IGeometricSet>("set", "XMLGeometricSet");
    ExpectLooseChildAt<IExtensionGeometry>("extension", "XMLExtensionGeometry");
    ExpectLooseChildAt<IAnnotationCallout>("note", "XMLAnnotationCallout");
    ExpectLooseChildAt<IAnnotationCalloutElement>("leader", "XMLAnnotationCalloutElement");
}

TEST_F(HostingExceptions, ChildAtOfAnAssembly)
{
    IAssembly const& assembly = Get<IAssembly>("assembly");
    EXPECT_EQ(ThrownBy([&] { assembly.ChildAt(assembly.ChildCount() - 1); }), kNothing);
    EXPECT_EQ(ThrownBy([&] { assembly.ChildAt(assembly.ChildCount()); }), InvalidChildOf("XMLAssembly"));
    EXPECT_EQ(ThrownBy([&] { assembly.ChildAt(kFar); }), InvalidChildOf("XMLAssembly"));
}

TEST_F(HostingExceptions, ChildIdAtOfASketch)
{
    ISketch const& sketch = Get<ISketch>("sketch");
    ASSERT_EQ(sketch.CurveIds().Size(), 1U);
    ASSERT_EQ(sketch.PointIds().Size(), 2U);
    ASSERT_EQ(sketch.ChildCount(), 3U);
    EXPECT_EQ(Text(sketch.ChildIdAt(0)), "sketchcurve");
    for (unsigned long long const index : {1U, 2U, 3U})
        EXPECT_EQ(ThrownBy([&] { sketch.ChildIdAt(index); }), kSubscript) << index;
    EXPECT_EQ(ThrownBy([&] { EXPECT_TRUE(sketch.ChildIdAt(4).IsEmpty()); }), kNothing) << "beyond the count";
}

TEST_F(HostingExceptions, ChildAtOfAPartOrFeatureOverride)
{
    IPart const& part = Get<IPart>("part");
    ExpectSubscript("IPart", part.ChildCount(), [&](auto index) { part.ChildAt(index); });
    auto const& featureOverride = Get<IAssemblyFeatureOverride>("override");
    ExpectSubscript("IAssemblyFeatureOverride", featureOverride.ChildCount(),
                    [&](auto index) { featureOverride.ChildAt(index); });
}

TEST_F(HostingExceptions, CrossLevelValuesCustomDataSectionPlanesLinesAndFragments)
{
    IdSet path;
    IdSet styles;
    bool visible = false;
    Matrix3d transform;
    IAssembly const& assembly = Get<IAssembly>("assembly");
    ExpectSubscript("visibilities", assembly.CrossLevelVisibilityCount(),
                    [&](auto index) { assembly.CrossLevelVisibilityAt(index, path, visible); });
    ExpectSubscript("styles", assembly.CrossLevelStyleCount(),
                    [&](auto index) { assembly.CrossLevelStyleAt(index, path, styles); });
    ExpectSubscript("transforms", assembly.CrossLevelTransformCount(),
                    [&](auto index) { assembly.CrossLevelTransformAt(index, path, transform); });
    UTF8String key;
    Variant value;
    IUniverse const& universe = *m_producer.LoadUniverse();
    ExpectSubscript("custom data", universe.CustomDataCount(),
                    [&](auto index) { universe.CustomDataAt(index, key, value); });
    auto const& camera = Get<ISectionCamera>("camera");
    ExpectSubscript("planes", camera.SectionPlaneCount(), [&](auto index) { camera.SectionPlaneAt(index); });
    IText const& text = *Get<IAnnotationCallout>("note").Text();
    ExpectSubscript("lines", text.LineCount(), [&](auto index) { text.LineAt(index); });
    ITextLine const& line = *text.LineAt(0);
    ExpectSubscript("fragments", line.FragmentCount(), [&](auto index) { line.FragmentAt(index); });
}

TEST_F(HostingExceptions, MembersOfAView)
{
    IView const& view = Get<IView>("view");
    ExpectSubscript("path", view.ViewMemberCount(), [&](auto index) { view.OccurrencePathAt(index); });
    ExpectSubscript("visibility", view.ViewMemberCount(), [&](auto index) { view.EntityVisibilityAt(index); });
    ExpectSubscript("transform", view.ViewMemberCount(), [&](auto index) { view.EntityTransformAt(index); });
    ExpectSubscript("styles", view.ViewMemberCount(), [&](auto index) { view.EntityStylesAt(index); });
}

TEST_F(HostingExceptions, ListsOfAMesh)
{
    EditablePolygon const* polygon = nullptr;
    unsigned int material = 0;
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    IPolygonMesh const& mesh = WithDetailedMesh(scene).Get<IPolygonMesh>("m");
    ExpectSubscript("vertices", mesh.VertexCount(), [&](auto index) { mesh.VertexAt(index); });
    ExpectSubscript("normals", mesh.NormalCount(), [&](auto index) { mesh.NormalAt(index); });
    ExpectSubscript("polygons", mesh.PolygonCount(), [&](auto index) { mesh.PolygonAt(index, polygon); });
    ExpectSubscript("materials", mesh.PolygonCount(), [&](auto i) { mesh.PolygonMaterialIndexAt(i, material); });
    ExpectSubscript("texture", mesh.TextureVertexSetCount(), [&](auto index) { mesh.TextureVertexSetAt(index); });
}

TEST_F(HostingExceptions, ABadIndexOfTheseIsNotSpecified)
{
    UTF8String id;
    UTF16String path;
    IFile const& file = Get<IFile>("file");
    CustomProperty property;
    IPolygonMesh const& mesh = Get<IPolygonMesh>("mesh");
    FaceSegmentInfo face;
    EdgeSegmentInfo edge;
    PolygonIndexSet polygons;
    VertexIndexSet vertices;
    bool visible = false;
    auto const isSpecified = [](IsValueSpecifiedEnum answer) { return answer != kIsValueSpecified_No; };
    EXPECT_TRUE(isSpecified(file.RefFileAt(0, id, path)));
    EXPECT_FALSE(isSpecified(file.RefFileAt(file.RefFileCount(), id, path)));
    FileProperties const& properties = *file.FileProperties();
    EXPECT_TRUE(isSpecified(properties.CustomPropertyAt(0, property)));
    EXPECT_FALSE(isSpecified(properties.CustomPropertyAt(properties.CustomPropertyCount(), property)));
    EXPECT_TRUE(isSpecified(mesh.FaceSegmentAt(0, face)));
    EXPECT_FALSE(isSpecified(mesh.FaceSegmentAt(mesh.FaceSegmentCount(), face)));
    EXPECT_TRUE(isSpecified(mesh.EdgeSegmentInfoAt(0, edge)));
    EXPECT_FALSE(isSpecified(mesh.EdgeSegmentInfoAt(mesh.EdgeSegmentCount(), edge)));
    EXPECT_TRUE(isSpecified(mesh.EdgeSegmentAt(0, vertices)));
    EXPECT_FALSE(isSpecified(mesh.EdgeSegmentAt(mesh.EdgeSegmentCount(), vertices)));
    EXPECT_TRUE(isSpecified(mesh.MeshSegmentAt(0, polygons)));
    EXPECT_FALSE(isSpecified(mesh.MeshSegmentAt(mesh.MeshSegmentCount(), polygons)));
    EXPECT_TRUE(isSpecified(mesh.MeshSegmentVisibilityAt(0, visible)));
    EXPECT_FALSE(isSpecified(mesh.MeshSegmentVisibilityAt(mesh.MeshSegmentCount(), visible)));
}

TEST_F(HostingExceptions, ABadIndexOrAnotherDimensionOfATextureSetIsNotSpecified)
{
    MeshTextureVertex2D flat(0, 0);
    MeshTextureVertex3D deep(0, 0, 0);
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    IPolygonMesh const& mesh = WithDetailedMesh(scene).Get<IPolygonMesh>("m");
    ITextureVertexSet const& two = *mesh.TextureVertexSetAt(0);
    ITextureVertexSet const& three = *mesh.TextureVertexSetAt(1);
    EXPECT_EQ(two.VertexAt(0, flat), kIsValueSpecified_Yes);
    EXPECT_EQ(two.VertexAt(1, flat), kIsValueSpecified_No);
    EXPECT_EQ(two.VertexAt(0, deep), kIsValueSpecified_No);
    EXPECT_EQ(three.VertexAt(0, deep), kIsValueSpecified_Yes);
    EXPECT_EQ(three.VertexAt(1, deep), kIsValueSpecified_No);
    EXPECT_EQ(three.VertexAt(0, flat), kIsValueSpecified_No);
}

TEST_F(HostingExceptions, APointCloudLeavesTheOutputsAloneForABadIndex)
{
    IPointCloud const& cloud = Get<IPointCloud>("cloud");
    double x = 7.0;
    double y = 8.0;
    double z = 9.0;
    for (std::size_t const index : {cloud.PointCount(), static_cast<std::size_t>(kFar)})
        EXPECT_EQ(ThrownBy([&] { cloud.Point(index, &x, &y, &z); }), kNothing);
    EXPECT_EQ(x + 10 * y + 100 * z, 987.0);
    cloud.Point(1, &x, &y, &z);
    EXPECT_EQ(x + 10 * y + 100 * z, 1.5);
}

TEST_F(HostingExceptions, CurveDataAtAndTheListsOfCurveData)
{
    ICurve const& line = Get<ICurve>("curve");
    ExpectSubscript("curve data", line.CurveDataCount(), [&](auto index) { line.CurveDataAt(index); });

    using namespace Authoring;
    PolylineRecord const polyline{false, false, {{0, 0, 0}, {1, 0, 0}}, {{{0, 0, 1}, {0, 0, 1}}}};
    auto const segment = std::make_shared<CurveRecord const>(CurveRecord{LineRecord{{}, {1, 0, 0}, 0, 1}});
    CompositeRecord const composite{false, false, {{"s", segment, 1, 0.0, 1.0, 2}}};
    NurbsRecord const nurbs{false, false, {0, 0, 1, 1}, {{0, 0, 0}, {1, 0, 0}}, {}, 1, 0.0, 1.0};
    TestScene scene(StoreScene(kMeshInfo, {}, {"p", "c", "n"}));
    MeshStoreWriter store(Wide((scene.Folder() + "/s.mesh").c_str()), MeshStoreLayout::kMeshInfo);
    store.Curve("p", {polyline});
    store.Curve("c", {composite});
    store.Curve("n", {nurbs});
    store.Finish();
    scene.Begin();
    auto const dataOf = [&](char const* id) { return scene.Get<ICurve>(id).CurveDataAt(0); };

    double x = 0;
    double y = 0;
    double z = 0;
    double w = 0;
    ICurveData* found = nullptr;
    auto const& points = dynamic_cast<IPolyLineData const&>(*dataOf("p"));
    auto const& segments = dynamic_cast<ICompositeCurveData const&>(*dataOf("c"));
    auto const& spline = dynamic_cast<INurbsCurveData const&>(*dataOf("n"));
    auto const expect = [&](char const* what, int count, auto const& getter)
    {
        ExpectSubscript(what, static_cast<unsigned long long>(count), [&](auto i) { getter(static_cast<int>(i)); });
        EXPECT_EQ(ThrownBy([&] { getter(-1); }), kSubscript) << what;
    };
    expect("points", 2, [&](int i) { points.Point(i, x, y, z); });
    expect("vectors", 2, [&](int i) { points.VectorAt(i, x, y, z); });
    expect("segments", 1, [&](int i) { segments.Segment(i, found); });
    expect("knots", 4, [&](int i) { spline.Knot(i, w); });
    expect("control points", 2, [&](int i) { spline.ControlPoint(i, x, y, z, w); });

    bool flag = false;
    std::uint32_t value = 77;
    w = 99;
    EXPECT_EQ(ThrownBy([&] { segments.SegmentFlag(1, flag); }), kSubscript);
    EXPECT_EQ(ThrownBy([&] { segments.SegmentInterval(1, z, w); }), kSubscript);
    EXPECT_EQ(ThrownBy([&] { segments.SegmentValue(1, value); }), kSubscript);
    EXPECT_EQ(ThrownBy([&] { segments.SegmentFlag(-1, flag); }), kNothing);
    EXPECT_EQ(ThrownBy([&] { segments.SegmentInterval(-1, z, w); }), kNothing);
    EXPECT_EQ(ThrownBy([&] { segments.SegmentValue(-1, value); }), kNothing);
    EXPECT_FALSE(flag);
    EXPECT_EQ(w, 99);
    EXPECT_EQ(value, 77U);
}

TEST_F(HostingExceptions, ValueTypes)
{
    IdSet ids;
    ids.AddWithoutUniquenessCheck("a");
    IdSetSet sets;
    sets.AddWithUniquenessCheck(ids);
    OccurrencePathCollection paths;
    paths.AddPath(ids);
    ExpectSubscript("IdSet", 1, [&](auto index) { ids.At(index); });
    ExpectSubscript("IdSetSet", 1, [&](auto index) { sets.At(index); });
    ExpectSubscript("OccurrencePathCollection", 1, [&](auto index) { paths.At(index); });
    Vector vector;
    ExpectSubscript("Vector", 3, [&](auto index) { vector[index] = 1.0; });
    ExpectSubscript("rows", 4, [](auto index) { Matrix3d().Element(static_cast<int>(index), 0); });
    ExpectSubscript("columns", 4, [](auto index) { Matrix3d().Element(0, static_cast<int>(index)); });
    EXPECT_EQ(ThrownBy([] { Matrix3d().Element(-1, 0); }), kSubscript);
    IBrep const& body = Get<IBrep>("body");
    SubEntityToStylesMap const& styles = *body.StylesMap();
    ExpectSubscript("styled", styles.Size(), [&](auto index) { styles.DataIdAt(index); });
    ExpectSubscript("styles", styles.Size(), [&](auto index) { styles.StylesAt(index); });
    DataIdToPersistentIdMap const& persistent = *body.PersistentIDsMap();
    ExpectSubscript("data ids", persistent.Size(), [&](auto index) { persistent.DataIdAt(index); });
    ExpectSubscript("persistent ids", persistent.Size(), [&](auto index) { persistent.PersistentIdAt(index); });
}

TEST(HostingExceptionsOfTheFramework, DeriveFromOneThatIsAStandardException)
{
    EXPECT_TRUE((std::is_base_of_v<std::exception, Exception>));
    EXPECT_TRUE((std::is_base_of_v<Exception, GeneralException>));
    EXPECT_TRUE((std::is_base_of_v<Exception, FileException>));
}

}  // namespace KVR::Test
