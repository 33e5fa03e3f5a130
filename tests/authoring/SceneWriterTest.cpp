#include "authoring/SceneWriter.h"

#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>

#include "framework/api/Exception.h"
#include "framework/api/kvr_api.h"
#include "framework/kernel/gmk_array.h"
#include "tests/authoring/WrittenScene.h"
#include "tests/support/ResidentMemory.h"
#include "tests/support/SanitizedBuild.h"
#include "tests/support/Shapes.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using namespace Authoring;
namespace fs = std::filesystem;

}  // namespace

TEST(SceneWriter, StructureComesBackAsItWasWritten)
{
    WrittenScene written;
    SceneWriter scene(written.Path());
    FileRecord file = RootFile({{"assembly", FileChildType::kAssembly}});
    file.path = UTF8String("/designs/gate.asm");
    file.properties.emplace();
    file.properties->texts = {{"Author", "A. Author"}, {"Title", "Größe <1 & \"2\""}};
    file.properties->custom.emplace_back();
    file.properties->custom.back().SetProperty(Wide("Mass"), 1.5);
    scene.BeginFile(file);
    scene.EndFile();
    ComponentRecord assembly = Named<ComponentRecord>("assembly", "門");
    assembly.unit = {kUnitType_Inch, kUnitType_Millimeter, kUnitType_Degree};
    assembly.crossLevel.visibilities = {{{"placed"}, false}};
    assembly.crossLevel.styles = {{{"placed", "below"}, {"style"}}};
    assembly.crossLevel.transforms = {{{"placed"}, Moved(5.0)}};
    scene.BeginAssembly(assembly);
    AttributeSetRecord attributes;
    StyleRecord style = Named<StyleRecord>("style", "Steel");
    style.diffuse = ColorRecord{0.25, 0.5, 0.75, 1.0};
    attributes.styles.push_back(style);
    scene.AttributeSet(attributes);
    InstanceRecord instance = Named<InstanceRecord>("placed", "Placed");
    instance.targetId = "part";
    instance.transform = Moved(0.1);
    instance.isVisible = false;
    instance.styles = {"style"};
    scene.Instance(instance);
    scene.EndAssembly();
    scene.BeginPart(Named<ComponentRecord>("part", "Part"));
    scene.EndPart();
    scene.Finish();

    EXPECT_EQ(Text(written.Begin().RootObjectId().Id()), "file");
    auto& root = written.Get<IFile>("file");
    UTF16String text;
    ASSERT_EQ(root.FileProperties()->Title(text), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(text), "Größe <1 & \"2\"");
    CustomProperty property;
    ASSERT_EQ(root.FileProperties()->CustomPropertyAt(0, property), kIsValueSpecified_Yes);
    double mass = 0.0;
    EXPECT_EQ(property.Value(mass), kIsValueSpecified_Yes);
    EXPECT_EQ(mass, 1.5);
    auto& top = written.Get<IAssembly>("assembly");
    EXPECT_EQ(Text(top.Label()), "門");
    UnitTypeEnum unit = kUnitType_Unknown;
    top.LengthUnit(unit);
    EXPECT_EQ(unit, kUnitType_Inch);
    IdSet path;
    IdSet styles;
    ASSERT_EQ(top.CrossLevelStyleCount(), 1u);
    top.CrossLevelStyleAt(0, path, styles);
    EXPECT_EQ(Ids(path), (std::vector<std::string>{"placed", "below"}));
    EXPECT_EQ(Ids(styles), std::vector<std::string>{"style"});
    Matrix3d transform;
    top.CrossLevelTransformAt(0, path, transform);
    EXPECT_EQ(transform.Element(0, 3), 5.0);
    auto& placed = written.Get<IInstance>("placed");
    EXPECT_EQ(placed.Transform()->Element(0, 3), 0.1);
    EXPECT_FALSE(placed.IsVisible());
    EXPECT_EQ(Text(placed.TargetId().Id()), "part");
}

TEST(SceneWriter, BodiesMeshesAndCurvesStandInTheirStoresInBothForms)
{
    for (bool const isText : {false, true})
    {
        WrittenScene written;
        SceneWriterOptions options;
        options.kernelForm = isText ? KernelStoreForm::kText : KernelStoreForm::kBinary;
        options.meshLayout = isText ? MeshStoreLayout::kGeometryInfo : MeshStoreLayout::kMeshInfo;
        SceneWriter scene(written.Path(), options);
        BeginPart(scene);
        BodyRecord body = Named<BodyRecord>("body", "Box");
        body.faces = {{"top", {"red"}}};
        scene.Kernel().Body("body", BoxShape(1.0, 2.0, 3.0), {{5, "top"}}, {});
        scene.Body(body);
        MeshHead head;
        head.vertexCount = 3;
        head.polygonCount = 1;
        std::vector<double> const corners{0, 0, 0, 1, 0, 0, 0, 1, 0};
        std::vector<std::uint64_t> const triangle{0, 1, 2};
        scene.Meshes().BeginMesh("mesh", head);
        scene.Meshes().Vertices(corners);
        PolygonRecord polygon;
        polygon.vertices = triangle;
        scene.Meshes().Polygon(polygon);
        scene.Meshes().EndMesh();
        scene.Mesh(Named<MeshRecord>("mesh", "Triangle"));
        std::vector<SegmentStoreWriter::Indices> const faces{{0}};
        scene.Segments().Mesh("mesh", faces, {}, {true});
        scene.Meshes().Curve("curve", {LineRecord{{}, {1.0, 0.0, 0.0}, 0.0, 2.0}});
        scene.Curve(Named<CurveElementRecord>("curve"));
        scene.Kernel().Edge("edge", ArcEdge());
        CurveElementRecord kernelCurve = Named<CurveElementRecord>("arc");
        kernelCurve.kernelEntityIds = {"edge"};
        scene.Curve(kernelCurve);
        scene.EndPart();
        scene.Finish();

        written.Begin();
        auto& served = written.Get<IBrep>("body");
        ASSERT_NE(served.Body(), nullptr);
        IdSet styles;
        EXPECT_EQ(served.StylesMap()->Styles("top", styles), kIsValueSpecified_Yes);
        EXPECT_EQ(Ids(styles), std::vector<std::string>{"red"});
        auto& mesh = written.Get<IPolygonMesh>("mesh");
        EXPECT_EQ(mesh.PolygonCount(), 1u);
        EXPECT_EQ(mesh.FaceSegmentCount(), 1u);
        EXPECT_EQ(written.Get<ICurve>("curve").CurveDataCount(), 1u);
        EXPECT_EQ(written.Get<ICurve>("arc").KernelCurves().count(), 1);
    }
}

TEST(SceneWriter, GeometryOfEveryKindComesBack)
{
    WrittenScene written;
    SceneWriter scene(written.Path());
    BeginPart(scene);
    PointRecord point = Named<PointRecord>("point");
    point.position = {1.0, 2.0, 3.0};
    point.transform = Moved(7.0);
    scene.Point(point);
    PointCloudRecord cloud = Named<PointCloudRecord>("cloud");
    for (int i = 0; i < 10'000; ++i)
        cloud.points.push_back({i * 0.1, 0.0, 1.0});
    scene.PointCloud(cloud);
    WorkAxisRecord axis = Named<WorkAxisRecord>("axis");
    axis.end = {0.0, 0.0, 9.0};
    scene.WorkAxis(axis);
    WorkPlaneRecord plane = Named<WorkPlaneRecord>("plane");
    plane.plane.origin = {0.0, -20.0, 0.0};
    plane.displayRange = {{-1.0, -1.0, 0.0}, {1.0, 1.0, 0.0}};
    scene.WorkPlane(plane);
    scene.WorkPoint(Named<WorkPointRecord>("corner"));
    SketchRecord sketch = Named<SketchRecord>("sketch");
    sketch.points.push_back(Named<PointRecord>("inSketch"));
    scene.Sketch(sketch);
    scene.BeginGeometricSet(Named<GeometryRecord>("set"));
    scene.BeginExtensionGeometry(Named<GeometryRecord>("inner"));
    scene.Point(Named<PointRecord>("inSet"));
    scene.EndSet();
    scene.EndSet();
    CalloutRecord callout = Named<CalloutRecord>("zNote", "Note");
    callout.text.emplace();
    TextFragmentRecord fragment;
    fragment.value = "Deburr";
    fragment.isBold = true;
    callout.text->lines = {{fragment}, {}};
    callout.plane = Named<WorkPlaneRecord>("notePlane");
    callout.childIds = {"point"};
    CalloutElementRecord element = Named<CalloutElementRecord>("leader");
    element.points.push_back(Named<PointRecord>("tip"));
    callout.elements.push_back(element);
    scene.Callout(callout);
    scene.EndPart();
    scene.Finish();

    written.Begin();
    EXPECT_EQ(written.Get<IPoint>("point").Z(), 3.0);
    EXPECT_EQ(written.Get<IPoint>("point").Transform()->Element(0, 3), 7.0);
    EXPECT_EQ(written.Get<IPointCloud>("cloud").PointCount(), 10'000u);
    EXPECT_NO_THROW(written.Get<IWorkAxis>("axis"));
    EXPECT_NO_THROW(written.Get<IWorkPoint>("corner"));
    EXPECT_NO_THROW(written.Get<ISketch>("sketch"));
    EXPECT_EQ(written.Get<IGeometricSet>("set").ChildCount(), 1u);
    EXPECT_EQ(written.Get<IExtensionGeometry>("inner").ChildCount(), 1u);
    auto& note = written.Get<IAnnotationCallout>("zNote");
    ASSERT_NE(note.Text(), nullptr);
    EXPECT_EQ(note.Text()->LineCount(), 2u);
    EXPECT_EQ(note.ChildCount(), 2u);
}

TEST(SceneWriter, AttributeSetsPropertiesAndOtherSideFilesComeBack)
{
    WrittenScene written;
    SceneWriter scene(written.Path());
    unsigned char const blob[] = {1, 2, 3};
    UniverseRecord universe;
    universe.upVector = {0.0, 1.0, 0.0};
    universe.customData = {{"Project", UTF8String("Gate"), {}, {}},
                           {"Thumbnail", {}, {}, std::pair(scene.Blob(blob, sizeof blob), sizeof blob)}};
    scene.Universe(universe);
    scene.BeginFile(RootFile({{"part", FileChildType::kPart}}));
    AttributeSetRecord attributes;
    LayerRecord layer = Named<LayerRecord>("layer", "Hinges");
    layer.number = 7;
    layer.itemIds = {"mesh", "other"};
    layer.isVisible = false;
    attributes.layers.push_back(layer);
    GroupRecord group = Named<GroupRecord>("group");
    attributes.groups.push_back(group);
    attributes.levelsOfDetail.push_back(Named<LevelOfDetailRecord>("coarse"));
    CameraRecord camera = Named<CameraRecord>("camera", "Cut");
    camera.isPerspective = true;
    camera.viewAngle = 0.5;
    camera.sectionPlanes.emplace_back();
    attributes.cameras.push_back(camera);
    ViewRecord view = Named<ViewRecord>("view", "Open");
    view.cameraIds = {"camera"};
    view.members.push_back({{"placed"}, false, {}, Moved(2.0)});
    attributes.views.push_back(view);
    scene.AttributeSet(attributes);
    scene.EndFile();
    scene.BeginPart(Named<ComponentRecord>("part"));
    MeshHead head;
    scene.Meshes().BeginMesh("mesh", head);
    scene.Meshes().EndMesh();
    scene.Mesh(Named<MeshRecord>("mesh"));
    scene.EndPart();
    PropertyValue supplier;
    supplier.SetProperty(Wide("Supplier"), Wide("ACME"));
    scene.Property("mesh", supplier);
    scene.Finish();

    XMLProducer& producer = written.Begin();
    EXPECT_EQ(producer.LoadUniverse()->CustomDataCount(), 2u);
    auto& served = written.Get<ILayer>("layer");
    EXPECT_EQ(served.LayerNumber(), 7);
    EXPECT_FALSE(served.IsVisible());
    EXPECT_EQ(Ids(served.GeometryItems()), (std::vector<std::string>{"mesh", "other"}));
    EXPECT_EQ(written.Get<ISectionCamera>("camera").SectionPlaneCount(), 1u);
    auto& open = written.Get<IView>("view");
    ASSERT_EQ(open.ViewMemberCount(), 1u);
    EXPECT_FALSE(open.EntityVisibilityAt(0));
    EXPECT_EQ(open.EntityTransformAt(0).Element(0, 3), 2.0);
    IdSet const ids = written.Get<IPolygonMesh>("mesh").PropertyIds();
    ASSERT_EQ(ids.Size(), 1u);
    IProperty const* property = nullptr;
    ASSERT_EQ(producer.LoadUniverse()->PropertyDatabaseOf()->PropertyAt(ids.At(0), property), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(property->Name()), "Supplier");
}

TEST(SceneWriter, WithoutAFinishNothingStaysBehind)
{
    WrittenScene written;
    {
        SceneWriter scene(written.Path());
        unsigned char const byte = 1;
        scene.Blob(&byte, 1);
        BeginPart(scene);
        scene.Meshes();
        scene.Kernel();
    }
    EXPECT_TRUE(written.Files().empty());
}

TEST(SceneWriter, AFailureAtTheEndTakesBackTheSideFiles)
{
    WrittenScene written;
    {
        SceneWriter scene(written.Path());
        BeginPart(scene);
        scene.Meshes();
        scene.EndPart();
        // In the way of the document, which comes last.
        fs::create_directory(written.NarrowPath());
        EXPECT_THROW(scene.Finish(), FileException);
    }
    EXPECT_EQ(written.Files(), std::vector<std::string>{"scene.xml"});
}

TEST(SceneWriter, APropertyFileOfAnEarlierSceneGoes)
{
    WrittenScene written;
    std::ofstream(written.File("scene.kvrproperty")) << "<Properties/>";
    SceneWriter scene(written.Path());
    BeginPart(scene);
    scene.EndPart();
    scene.Finish();
    EXPECT_EQ(written.Files(), std::vector<std::string>{"scene.xml"});
}

TEST(SceneWriter, IdsAreCheckedWhereTheyAreWritten)
{
    WrittenScene written;
    SceneWriter scene(written.Path());
    BeginPart(scene);
    scene.Point(Named<PointRecord>("a"));
    EXPECT_THROW(scene.Point(Named<PointRecord>("a")), GeneralException);
    EXPECT_THROW(scene.Point(Named<PointRecord>("")), GeneralException);
    EXPECT_THROW(scene.Point(Named<PointRecord>("part")), GeneralException);
}

TEST(SceneWriter, AnIdThatIsNamedAndDoesNotComeIsRefusedInTheEnd)
{
    WrittenScene written;
    SceneWriter scene(written.Path());
    scene.BeginFile(RootFile({{"part", FileChildType::kPart}, {"lost", FileChildType::kPart}}));
    scene.EndFile();
    scene.BeginPart(Named<ComponentRecord>("part"));
    scene.EndPart();
    try
    {
        scene.Finish();
        FAIL() << "nothing was thrown";
    }
    catch (GeneralException const& exception)
    {
        EXPECT_EQ(Text(exception.Message()), "no object has the id lost");
    }
    EXPECT_FALSE(fs::exists(written.NarrowPath()));
}

TEST(SceneWriter, CallsThatDoNotFitTogetherAreRefused)
{
    WrittenScene written;
    SceneWriter scene(written.Path());
    EXPECT_THROW(scene.Instance(Named<InstanceRecord>("a")), GeneralException);
    EXPECT_THROW(scene.AttributeSet({}), GeneralException);
    EXPECT_THROW(scene.EndPart(), GeneralException);
    EXPECT_THROW(scene.EndSet(), GeneralException);
    BeginPart(scene);
    EXPECT_THROW(scene.BeginAssembly(Named<ComponentRecord>("b")), GeneralException);
    EXPECT_THROW(scene.Instance(Named<InstanceRecord>("c")), GeneralException);
    EXPECT_THROW(scene.EndAssembly(), GeneralException);
    EXPECT_THROW(scene.Finish(), GeneralException);
    scene.Point(Named<PointRecord>("d"));
    EXPECT_THROW(scene.AttributeSet({}), GeneralException);
    scene.BeginExtensionGeometry(Named<GeometryRecord>("e"));
    EXPECT_THROW(scene.BeginGeometricSet(Named<GeometryRecord>("f")), GeneralException);
    EXPECT_THROW(scene.EndPart(), GeneralException);
}

TEST(SceneWriter, TextsThatXmlDoesNotKnowAndNumbersThatAreNoneAreRefused)
{
    for (char const* const text : {"\x01", "\xFF", "\xED\xA0\x80"})
    {
        WrittenScene written;
        SceneWriter scene(written.Path());
        EXPECT_THROW(scene.BeginPart(Named<ComponentRecord>("p", text)), GeneralException);
        EXPECT_THROW(scene.EndPart(), GeneralException) << "a scene with a failure in it goes on";
    }
    WrittenScene written;
    SceneWriter scene(written.Path());
    PointRecord point = Named<PointRecord>("p");
    point.position = {std::numeric_limits<double>::infinity(), 0.0, 0.0};
    EXPECT_THROW(scene.Point(point), GeneralException);
}

TEST(SceneWriter, ATypeThatTheFormatHasNoTextForIsRefused)
{
    auto const write = [](auto const& record, auto operation)
    {
        WrittenScene written;
        SceneWriter scene(written.Path());
        BeginPart(scene);
        (scene.*operation)(record);
        scene.EndPart();
    };
    for (char const* const type : {"", "Solid", "BrepSolid ", "kProducerGeometryType_BrepSolid", "Regular"})
    {
        BodyRecord body = Named<BodyRecord>("b");
        body.type = type;
        EXPECT_THROW(write(body, &SceneWriter::Body), GeneralException) << type;
    }
    MeshRecord mesh = Named<MeshRecord>("m");
    mesh.type = "BrepSolid";
    EXPECT_THROW(write(mesh, &SceneWriter::Mesh), GeneralException);
    mesh.type = "Fan";
    EXPECT_NO_THROW(write(mesh, &SceneWriter::Mesh));
    AttributeSetRecord set;
    set.styles = {Named<StyleRecord>("s")};
    set.styles[0].curveFont = "ISO_LongDashDoubleShortDash";
    set.styles[0].pointMarker = "FilledDiamond";
    EXPECT_NO_THROW(write(set, &SceneWriter::AttributeSet));
    set.styles[0].pointMarker = "ISO_Dash";
    EXPECT_THROW(write(set, &SceneWriter::AttributeSet), GeneralException);
}

TEST(SceneWriter, AnIdThatAnOccurrencePathCannotHoldIsRefused)
{
    WrittenScene written;
    SceneWriter scene(written.Path());
    ComponentRecord assembly = Named<ComponentRecord>("a");
    assembly.crossLevel.visibilities = {{{"b]c"}, true}};
    EXPECT_THROW(scene.BeginAssembly(assembly), GeneralException);
}

TEST(SceneWriter, AFolderThatIsNotThereIsAFileException)
{
    TempFolder const folder;
    EXPECT_THROW(SceneWriter(folder.PathOf("none/scene.xml")), FileException);
}

TEST(SceneWriter, MemoryGrowsByLittleForEachObject)
{
    WrittenScene written;
    SceneWriter scene(written.Path());
    BeginPart(scene);
    constexpr int kPoints = 200'000;
    long const before = ResidentMemoryKB();
    for (int i = 0; i < kPoints; ++i)
        scene.Point(Named<PointRecord>(("point" + std::to_string(i)).c_str(), "a label of some length, as they are"));
    long const after = ResidentMemoryKB();
    scene.EndPart();
    scene.Finish();
    // Digests in a hash table; the elements take more than 200 bytes each in the file.
    EXPECT_LT((after - before) * 1024, kPoints * (kIsSanitized ? 1000L : 100L));
    EXPECT_GT(fs::file_size(written.NarrowPath()), std::uintmax_t{kPoints} * 100);
}

}  // namespace KVR::Test
