// What the interfaces answer by themselves, when a class adds nothing.

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

#include "tests/framework/api/GeometryFakes.h"

namespace
{

using namespace KVR;

TEST(IObject, AnswersNothingOfItsOwn)
{
    FakePart const part;
    IObject const& object = part;
    EXPECT_FALSE(object.IsThreadSafe());
    EXPECT_TRUE(object.PropertyIds().IsEmpty());

    ExtensionDataContent content;
    content.SetTypeId("before");
    EXPECT_EQ(object.ExtensionDataByTypeId("type", content), kIsValueSpecified_No);
    EXPECT_EQ(content.TypeId(), UTF8String("before"));

    UTF8String key("before");
    EXPECT_EQ(object.ExtensionDataChangeKeyByTypeId("type", kSnapshotVersion_Current, key), kIsValueSpecified_No);
    EXPECT_EQ(key, UTF8String("before"));
}

TEST(IObject, IsNotCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<FakePart>);
    EXPECT_FALSE(std::is_copy_assignable_v<FakePart>);
}

void ExpectNoUnits(IUnit const& object)
{
    UnitTypeEnum unit = kUnitType_Slug;
    EXPECT_EQ(object.LengthUnit(unit), kIsValueSpecified_No);
    EXPECT_EQ(object.DisplayAngleUnit(unit), kIsValueSpecified_No);
    EXPECT_EQ(object.DisplayLengthUnit(unit), kIsValueSpecified_No);
    EXPECT_EQ(unit, kUnitType_Slug);
}

TEST(IUnit, HasNoUnits)
{
    ExpectNoUnits(FakePart());
    ExpectNoUnits(FakeAssembly());
    ExpectNoUnits(FakeInstance());
    ExpectNoUnits(FakeFile());
    ExpectNoUnits(FakeBrep());
}

TEST(IFile, SettingTheDisplayLengthUnitFeedsThatAnswerAndNoOther)
{
    FakeFile file;
    IFile& interface = file;
    interface.SetDisplayLengthUnit(kUnitType_Inch);
    UnitTypeEnum unit = kUnitType_Slug;
    EXPECT_EQ(file.LengthUnit(unit), kIsValueSpecified_No);
    EXPECT_EQ(file.DisplayAngleUnit(unit), kIsValueSpecified_No);
    EXPECT_EQ(unit, kUnitType_Slug);
    EXPECT_EQ(file.DisplayLengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Inch);

    interface.SetDisplayLengthUnit(kUnitType_Unknown);
    EXPECT_EQ(static_cast<IUnit const&>(file).DisplayLengthUnit(unit), kIsValueSpecified_Yes)
        << "an unknown unit that was set counts";
    EXPECT_EQ(unit, kUnitType_Unknown);
}

TEST(IGeometry, NetVisibilityIsThatOfTheObject)
{
    FakePoint point;
    IGeometry const& geometry = point;
    point.SetVisible(true);
    EXPECT_TRUE(geometry.IsNetVisible());
    point.SetVisible(false);
    EXPECT_FALSE(geometry.IsNetVisible());
}

TEST(IGeometry, HasNoStyles)
{
    FakePoint const point;
    EXPECT_TRUE(point.Styles().IsEmpty());
    EXPECT_TRUE(point.NetStyles().IsEmpty());
}

TEST(ISubEntityStyles, HasNoMap)
{
    EXPECT_EQ(FakeBrep().StylesMap(), nullptr);
    EXPECT_EQ(FakeCurve().StylesMap(), nullptr);
}

TEST(ISubObjectPersistentIds, HasNoMap)
{
    EXPECT_EQ(FakeBrep().PersistentIDsMap(), nullptr);
}

template <class Value>
void ExpectNotSpecified(IRenderStyle const& style, IsValueSpecifiedEnum (IRenderStyle::*getter)(Value&) const,
                        Value before)
{
    Value value = before;
    EXPECT_EQ((style.*getter)(value), kIsValueSpecified_No);
    EXPECT_TRUE(value == before);
}

void ExpectColorNotSpecified(IRenderStyle const& style, IsValueSpecifiedEnum (IRenderStyle::*getter)(Color&) const)
{
    Color color;
    color.SetFractionalRGBA(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ((style.*getter)(color), kIsValueSpecified_No);
    EXPECT_EQ(color.Red(), 0.1);
    EXPECT_EQ(color.Green(), 0.2);
    EXPECT_EQ(color.Blue(), 0.3);
    EXPECT_EQ(color.Alpha(), 0.4);
}

void ExpectNothingSpecified(IRenderStyle const& style)
{
    for (auto const getter : {&IRenderStyle::DiffuseColor, &IRenderStyle::AmbientColor, &IRenderStyle::EmissionColor,
                              &IRenderStyle::SpecularColor})
        ExpectColorNotSpecified(style, getter);
    ExpectColorNotSpecified(style, &IRenderStyle::Transparency);

    for (auto const getter :
         {&IRenderStyle::DiffuseTexture, &IRenderStyle::AmbientTexture, &IRenderStyle::EmissionTexture,
          &IRenderStyle::SpecularTexture, &IRenderStyle::BumpMap, &IRenderStyle::CutoutTexture})
        ExpectNotSpecified(style, getter, UTF8String("before"));

    for (auto const getter : {&IRenderStyle::DiffuseFactor, &IRenderStyle::AmbientFactor, &IRenderStyle::EmissionFactor,
                              &IRenderStyle::SpecularFactor, &IRenderStyle::Shininess, &IRenderStyle::Reflection,
                              &IRenderStyle::Eccentricity, &IRenderStyle::Rolloff, &IRenderStyle::PointStyleMarkerSize,
                              &IRenderStyle::CurveStyleWidth})
        ExpectNotSpecified(style, getter, -7.5);
    ExpectNotSpecified<double>(style, &IRenderStyle::Transparency, -7.5);

    ExpectNotSpecified(style, &IRenderStyle::ShaderType, static_cast<IRenderStyle::ShadingModelType>(1));
    ExpectNotSpecified(style, &IRenderStyle::PointStyleMarker, IRenderStyle::kPointStyleMarkerType_Circle);
    ExpectNotSpecified(style, &IRenderStyle::CurveStyleFont, IRenderStyle::kCurveStyleFontType_ISO_Dot);
    ExpectNotSpecified(style, &IRenderStyle::CurveStyleFillArea, static_cast<IRenderStyle::CurveStyleFillTypeEnum>(1));
}

TEST(IRenderStyle, SpecifiesNothing)
{
    ExpectNothingSpecified(FakeRenderStyle());
}

TEST(IVitreolRenderStyle, SpecifiesNothing)
{
    FakeVitreolRenderStyle const style;
    ExpectNothingSpecified(style);
    Color color;
    color.SetFractionalRGB(0.1, 0.2, 0.3);
    EXPECT_EQ(style.BestFitDiffuseColor(color), kIsValueSpecified_No);
    EXPECT_EQ(color.Green(), 0.2);
}

class RedStyle : public FakeVitreolRenderStyle
{
public:
    IsValueSpecifiedEnum DiffuseColor(Color& color) const override
    {
        color.SetFractionalRGBA(1.0, 0.25, 0.5, 0.75);
        return kIsValueSpecified_Yes;
    }
};

TEST(IVitreolRenderStyle, TheBestFittingColorIsTheDiffuseOne)
{
    Color color;
    EXPECT_EQ(RedStyle().BestFitDiffuseColor(color), kIsValueSpecified_Yes);
    EXPECT_EQ(color.Red(), 1.0);
    EXPECT_EQ(color.Green(), 0.25);
    EXPECT_EQ(color.Blue(), 0.5);
    EXPECT_EQ(color.Alpha(), 0.75);
}

FaceSegmentInfo FaceOf(unsigned long polygon, bool visible)
{
    PolygonIndexSet polygons;
    polygons.Add(polygon);
    FaceSegmentInfo face;
    face.SetPolygonIndexSet(polygons);
    face.SetVisible(visible);
    return face;
}

TEST(IPolygonMesh, MeshSegmentsAreTheFaceSegments)
{
    FakePolygonMesh mesh;
    mesh.faces = {FaceOf(10, true), FaceOf(20, false)};
    ASSERT_EQ(mesh.MeshSegmentCount(), 2U);
    for (unsigned long index = 0; index < 2; ++index)
    {
        PolygonIndexSet polygons;
        bool visible = index == 1;
        EXPECT_EQ(mesh.MeshSegmentAt(index, polygons), kIsValueSpecified_Yes);
        EXPECT_EQ(polygons.Indices(), std::vector<unsigned>(1, index == 0 ? 10 : 20));
        EXPECT_EQ(mesh.MeshSegmentVisibilityAt(index, visible), kIsValueSpecified_Yes);
        EXPECT_EQ(visible, index == 0);
    }
}

TEST(IPolygonMesh, EdgeSegmentsGiveTheirVertices)
{
    VertexIndexSet vertices;
    vertices.Append(3);
    vertices.Append(4);
    EdgeSegmentInfo edge;
    edge.SetVertexIndexSet(vertices);
    FakePolygonMesh mesh;
    mesh.edges = {EdgeSegmentInfo(), edge};
    VertexIndexSet answered;
    EXPECT_EQ(mesh.EdgeSegmentAt(1, answered), kIsValueSpecified_Yes);
    EXPECT_EQ(answered.Indices(), (std::vector<int>{3, 4}));
    EXPECT_EQ(mesh.EdgeSegmentAt(0, answered), kIsValueSpecified_Yes);
    EXPECT_TRUE(answered.Indices().empty());
    EXPECT_EQ(mesh.MeshSegmentCount(), 0U);
}

TEST(IPolygonMesh, LeavesTheOutputsAloneForASegmentThatIsNotThere)
{
    FakePolygonMesh mesh;
    mesh.faces = {FaceOf(10, false)};
    PolygonIndexSet polygons;
    polygons.Add(7);
    VertexIndexSet vertices;
    vertices.Append(7);
    bool visible = true;
    for (unsigned long const index : {1UL, ~0UL})
    {
        EXPECT_EQ(mesh.MeshSegmentAt(index, polygons), kIsValueSpecified_No);
        EXPECT_EQ(mesh.MeshSegmentVisibilityAt(index, visible), kIsValueSpecified_No);
        EXPECT_EQ(mesh.EdgeSegmentAt(index, vertices), kIsValueSpecified_No);
    }
    EXPECT_EQ(mesh.EdgeSegmentAt(0, vertices), kIsValueSpecified_No);
    EXPECT_EQ(polygons.Indices(), std::vector<unsigned>{7});
    EXPECT_EQ(vertices.Indices(), std::vector<int>{7});
    EXPECT_TRUE(visible);
}

TEST(FileProperties, SpecifiesNothing)
{
    FileProperties const properties;
    for (auto const getter : {&FileProperties::Title, &FileProperties::Author, &FileProperties::Organization,
                              &FileProperties::Description, &FileProperties::SendingSystem, &FileProperties::PartNumber,
                              &FileProperties::Revision, &FileProperties::Preprocessor, &FileProperties::Authorisation})
    {
        UTF16String text(L"before");
        EXPECT_EQ((properties.*getter)(text), kIsValueSpecified_No);
        EXPECT_EQ(text, UTF16String(L"before"));
    }
    Time time;
    ASSERT_TRUE(Time::FromString("2024-03-01", time));
    EXPECT_EQ(properties.CreationDate(time), kIsValueSpecified_No);
    EXPECT_EQ(time.Value().tm_year, 124);
    UnitTypeEnum unit = kUnitType_Slug;
    EXPECT_EQ(properties.MassUnit(unit), kIsValueSpecified_No);
    EXPECT_EQ(properties.TimeUnit(unit), kIsValueSpecified_No);
    EXPECT_EQ(unit, kUnitType_Slug);
    EXPECT_EQ(properties.CustomPropertyCount(), 0U);
    CustomProperty property;
    property.SetProperty(L"before", 1);
    EXPECT_EQ(properties.CustomPropertyAt(0, property), kIsValueSpecified_No);
    EXPECT_EQ(property.Name(), UTF16String(L"before"));
    ViewData viewData;
    viewData.SetUpVector(1.0, 2.0, 3.0);
    EXPECT_EQ(properties.ViewDataOf(viewData), kIsValueSpecified_No);
    EXPECT_EQ(viewData.UpVector()[2], 3.0);
}

TEST(FileQueryResult, SpecifiesNothing)
{
    FileQueryResult const result;
    bool flag = true;
    UTF16String version(L"before");
    EXPECT_EQ(result.SupportsFile(flag), kIsValueSpecified_No);
    EXPECT_EQ(result.HasAssemblyStructure(flag), kIsValueSpecified_No);
    EXPECT_EQ(result.FileVersion(version), kIsValueSpecified_No);
    EXPECT_EQ(result.FutureFileVersion(flag, version), kIsValueSpecified_No);
    EXPECT_TRUE(flag);
    EXPECT_EQ(version, UTF16String(L"before"));
}

class FakeProducer : public IProducer
{
public:
    FileQueryResult const* QueryFile() override { return nullptr; }
    RootId RootObjectId() const override { return RootId(nullptr); }
    IUniverse const* LoadUniverse() override { return nullptr; }
    IObject* Load(UTF8String const&) override { return &part; }
    void Dispose(UTF8String const&) override { disposed = true; }
    void BeginProcess(IdSet const&, FilterOptions const*, EventManager const*) override {}
    void EndProcess() override {}

    FakePart part;
    bool disposed = false;
};

TEST(IProducer, UnloadHasNoEffect)
{
    FakeProducer producer;
    static_cast<IProducer&>(producer).Unload("fake");
    EXPECT_FALSE(producer.disposed);
    EXPECT_EQ(producer.Load("fake"), &producer.part);
}

}  // namespace
