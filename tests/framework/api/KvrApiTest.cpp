// The header that includes the whole interface stands first and alone, so that it needs nothing in front of it.
#include "framework/api/kvr_api.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <type_traits>

namespace
{

using namespace KVR;

TEST(KvrApi, IncludesEveryHeaderOfTheFramework)
{
    std::filesystem::path const folder = std::filesystem::path(KVR_EXAMPLES_DIR).parent_path() / "framework/api";
    std::ifstream file(folder / "kvr_api.h");
    std::string const whole{std::istreambuf_iterator<char>(file), {}};
    int headers = 0;
    for (auto const& entry : std::filesystem::directory_iterator(folder))
    {
        std::string const name = entry.path().filename().string();
        if (entry.path().extension() != ".h" || name == "kvr_api.h")
            continue;
        ++headers;
        EXPECT_NE(whole.find("#include \"framework/api/" + name + "\""), std::string::npos) << name;
    }
    EXPECT_GT(headers, 60);
}

TEST(KvrApi, AnswersAreTheNumbersThatHostsKnow)
{
    EXPECT_EQ(int(kIsValueSpecified_No), 0);
    EXPECT_EQ(int(kIsValueSpecified_Yes), 1);
    EXPECT_EQ(int(StringUtil::kConversionStatus_Success), 0);
    EXPECT_EQ(int(kDataReturnCode_Ok), 0);
    EXPECT_EQ(int(kComponentRole_Producer), 2);
    EXPECT_EQ(int(ExceptionEvent::kEventType_Exception), 0);
    EXPECT_EQ(int(ExtensionDataContent::kObjectPathType_Occurrence), 0);
    EXPECT_EQ(int(ExtensionDataContent::kObjectPathType_Other), 1);
}

TEST(KvrApi, UnitsAreTheNumbersThatHostsKnow)
{
    EXPECT_EQ(int(kUnitType_Unknown), 0);
    EXPECT_EQ(int(kUnitType_Micrometer), 1);
    EXPECT_EQ(int(kUnitType_Millimeter), 2);
    EXPECT_EQ(int(kUnitType_Meter), 5);
    EXPECT_EQ(int(kUnitType_Inch), 9);
    EXPECT_EQ(int(kUnitType_Mile), 12);
    EXPECT_EQ(int(kUnitType_Radian), 32);
    EXPECT_EQ(int(kUnitType_Gradian), 34);
    EXPECT_EQ(int(kUnitType_Milligram), 48);
    EXPECT_EQ(int(kUnitType_Slug), 54);
    EXPECT_EQ(int(kUnitType_Millisecond), 64);
    EXPECT_EQ(int(kUnitType_Day), 68);
}

template <class Interface, class... Bases>
constexpr bool kHasBases = (std::is_base_of_v<Bases, Interface> && ...);

static_assert(kHasBases<IGeometry, IObject, ITransformable, IUnit, IVisible>);
static_assert(kHasBases<IComponent, IObject, IAttributeSets, IUnit>);
static_assert(kHasBases<IAssembly, IComponent> && kHasBases<IPart, IComponent>);
static_assert(kHasBases<IFile, IAttributeSets, IObject, IUnit>);
static_assert(kHasBases<IInstance, ITransformable, IObject, IUnit, IVisible>);
static_assert(kHasBases<IBrep, IGeometry, ISubEntityStyles, ISubObjectPersistentIds>);
static_assert(kHasBases<ICurve, IGeometry, ISubEntityStyles>);
static_assert(kHasBases<IPoint, IGeometry> && kHasBases<IPointCloud, IGeometry> && kHasBases<IPolygonMesh, IGeometry>);
static_assert(kHasBases<ISketch, IGeometry> && kHasBases<IGeometricSet, IGeometry>);
static_assert(kHasBases<IExtensionGeometry, IGeometry> && kHasBases<IWorkFeature, IGeometry>);
static_assert(kHasBases<IWorkAxis, IWorkFeature> && kHasBases<IWorkPlane, IWorkFeature>);
static_assert(kHasBases<IWorkPoint, IWorkFeature>);
static_assert(kHasBases<IAnnotationCallout, IObject, IVisible> && kHasBases<ILayer, IObject, IVisible>);
static_assert(kHasBases<IAssemblyFeatureOverride, IObject, IVisible> && kHasBases<IView, IObject, IVisible>);
static_assert(kHasBases<IAnnotationCalloutElement, IObject> && !kHasBases<IAnnotationCalloutElement, IVisible>);
static_assert(kHasBases<ICamera, IObject> && kHasBases<IGroup, IObject> && kHasBases<ILod, IObject>);
static_assert(kHasBases<IMaterialTexture, IObject> && kHasBases<IRenderStyle, IObject>);
static_assert(kHasBases<ISectionCamera, ICamera> && kHasBases<IVitreolRenderStyle, IRenderStyle>);
static_assert(kHasBases<Matrix3d, IMatrix> && kHasBases<UnitVector, Vector>);
static_assert(kHasBases<ObjectCollector, ObjectVisitor>);
static_assert(kHasBases<FileException, Exception> && kHasBases<GeneralException, Exception>);
static_assert(kHasBases<TextureVertexSet2D, ITextureVertexSet> && kHasBases<TextureVertexSet3D, ITextureVertexSet>);

}  // namespace
