// Like attributes of like elements are read in different forms. This is the table of them: attribute by text by answer.

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <string>

#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

// The texts, and no attribute at all.
constexpr std::array<char const*, 13> kTexts = {"1",    "0",  "2",   "-1", "true",  "True", "TRUE",
                                                "tRuE", "01", " 1 ", "",   "False", nullptr};
using Answers = std::array<bool, kTexts.size()>;

struct Attribute
{
    char const* name;
    // A scene, with "@" where the attribute stands in it, complete with its value.
    std::string scene;
    char const* attribute;
    bool (*ask)(TestScene& scene);
    Answers answers;
};

std::ostream& operator<<(std::ostream& stream, Attribute const& attribute)
{
    return stream << attribute.name;
}

std::string Scene(Attribute const& attribute, char const* text)
{
    std::string scene = attribute.scene;
    std::string const written = text ? std::string(attribute.attribute) + "=\"" + text + "\"" : "";
    return scene.replace(scene.find('@'), 1, written);
}

bool CrossLevelVisible(TestScene& scene)
{
    IdSet path;
    bool visible = false;
    scene.Get<IAssembly>("a").CrossLevelVisibilityAt(0, path, visible);
    EXPECT_EQ(path.Size(), 1U);
    return visible;
}

bool BoolProperty(TestScene& scene)
{
    CustomProperty property;
    bool value = false;
    EXPECT_EQ(scene.Get<IPart>("p").FileProperties()->CustomPropertyAt(0, property), kIsValueSpecified_Yes);
    EXPECT_EQ(property.Value(value), kIsValueSpecified_Yes);
    return value;
}

bool Structure(TestScene& scene)
{
    bool has = false;
    scene.Producer().QueryFile()->HasAssemblyStructure(has);
    return has;
}

constexpr char const* kInstance = R"(<S><IAssembly ID="a"><ChildSet><IInstance ID="i" @><Child ID="p"/></IInstance>
    </ChildSet></IAssembly><IPart ID="p"/></S>)";

// The text "1" alone; absence is false.
constexpr Answers kOneElseFalse = {true,  false, false, false, false, false, false,
                                   false, false, false, false, false, false};
// An integer equal to 1, so that zeros in front and blanks around do not matter.
constexpr Answers kIntegerOne = {true,  false, false, false, false, false, false,
                                 false, true,  true,  false, false, false};
// "1" or "true" in any case.
constexpr Answers kHelper = {true, false, false, false, true, true, true, true, false, false, false, false, false};
// The same two forms where absence is true.
constexpr Answers kOneAbsentShown = {true,  false, false, false, false, false, false,
                                     false, false, false, false, false, true};
constexpr Answers kHelperAbsentShown = {true, false, false, false, true,  true, true,
                                        true, false, false, false, false, true};
// "True" alone.
constexpr Answers kTrueWord = {false, false, false, false, false, true, false,
                               false, false, false, false, false, false};

// "True", the empty text and absence.
constexpr Answers kTrueWordOrNothing = {false, false, false, false, false, true, false,
                                        false, false, false, true,  false, true};
// Any integer but 0, and what absence means.
constexpr Answers NotZero(bool ifAbsent)
{
    return {true, false, true, true, false, false, false, false, true, true, false, false, ifAbsent};
}

std::string InPart(std::string const& sets)
{
    return "<S><IPart ID=\"p\"><AttributeSet>" + sets + "</AttributeSet></IPart></S>";
}

bool DepthField(TestScene& scene)
{
    bool defined = false;
    return scene.Get<ICamera>("k").IsDepthFieldDefined(defined) == kIsValueSpecified_Yes && defined;
}

class BooleanAttribute : public testing::TestWithParam<Attribute>
{
};

}  // namespace

TEST_P(BooleanAttribute, IsReadInItsForm)
{
    for (std::size_t i = 0; i < kTexts.size(); ++i)
    {
        TestScene scene(Scene(GetParam(), kTexts[i]));
        scene.Begin();
        EXPECT_EQ(GetParam().ask(scene), GetParam().answers[i]) << (kTexts[i] ? kTexts[i] : "absent");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Forms, BooleanAttribute,
    testing::Values(
        Attribute{"InstanceVisibility", kInstance, "Visibility",
                  [](TestScene& scene) { return scene.Get<IInstance>("i").IsVisible(); }, kOneElseFalse},
        Attribute{"InstanceNetVisibility", kInstance, "NetVisibility",
                  [](TestScene& scene) { return scene.Get<IInstance>("i").IsNetVisible(); }, kOneElseFalse},
        Attribute{"CrossLevelVisibility",
                  R"(<S><IAssembly ID="a"><CrossLevelAttributes><Visibilities><EntityVisibility Path="[i]" @/>
                     </Visibilities></CrossLevelAttributes></IAssembly></S>)",
                  "Visibility", &CrossLevelVisible, kOneElseFalse},
        Attribute{"AssemblyIsSingleUnderRoot", R"(<S><IAssembly ID="a" @/></S>)", "IsSingleUnderRoot",
                  [](TestScene& scene) { return scene.Get<IAssembly>("a").IsSingleUnderRoot(); }, kIntegerOne},
        Attribute{"PartIsSingleUnderRoot", R"(<S><IPart ID="p" @/></S>)", "IsSingleUnderRoot",
                  [](TestScene& scene) { return scene.Get<IPart>("p").IsSingleUnderRoot(); }, kIntegerOne},
        Attribute{"PointVisibility", R"(<S><IPoint ID="x" @/></S>)", "Visibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsVisible(); }, kOneAbsentShown},
        Attribute{"PointNetVisibility", R"(<S><IPoint ID="x" @/></S>)", "NetVisibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsNetVisible(); }, kOneAbsentShown},
        Attribute{"PointCloudVisibility", R"(<S><IPointCloud ID="x" @/></S>)", "Visibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsVisible(); }, kOneAbsentShown},
        Attribute{"PointCloudNetVisibility", R"(<S><IPointCloud ID="x" @/></S>)", "NetVisibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsNetVisible(); }, kOneAbsentShown},
        Attribute{"WorkAxisVisibility", R"(<S><IWorkAxis ID="x" @/></S>)", "Visibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsVisible(); }, kOneAbsentShown},
        Attribute{"WorkAxisNetVisibility", R"(<S><IWorkAxis ID="x" @/></S>)", "NetVisibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsNetVisible(); }, kOneAbsentShown},
        Attribute{"WorkPlaneVisibility", R"(<S><IWorkPlane ID="x" @/></S>)", "Visibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsVisible(); }, kOneAbsentShown},
        Attribute{"WorkPlaneNetVisibility", R"(<S><IWorkPlane ID="x" @/></S>)", "NetVisibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsNetVisible(); }, kOneAbsentShown},
        Attribute{"WorkPointVisibility", R"(<S><IWorkPoint ID="x" @/></S>)", "Visibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsVisible(); }, kOneAbsentShown},
        Attribute{"WorkPointNetVisibility", R"(<S><IWorkPoint ID="x" @/></S>)", "NetVisibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsNetVisible(); }, kOneAbsentShown},
        Attribute{"SketchVisibility", R"(<S><ISketch ID="x" SketchTypeEnum="kSketchType_2D" @/></S>)", "Visibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsVisible(); }, kOneElseFalse},
        Attribute{"SketchNetVisibility", R"(<S><ISketch ID="x" SketchTypeEnum="kSketchType_2D" @/></S>)",
                  "NetVisibility", [](TestScene& scene) { return scene.Get<IGeometry>("x").IsNetVisible(); },
                  kOneElseFalse},
        Attribute{"GeometricSetVisibility", R"(<S><IGeometricSet ID="x" @/></S>)", "Visibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsVisible(); }, kHelperAbsentShown},
        Attribute{"GeometricSetNetVisibility", R"(<S><IGeometricSet ID="x" @/></S>)", "NetVisibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsNetVisible(); }, kHelperAbsentShown},
        Attribute{"ExtensionGeometryVisibility", R"(<S><IExtensionGeometry ID="x" @/></S>)", "Visibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsVisible(); }, kHelperAbsentShown},
        Attribute{"ExtensionGeometryNetVisibility", R"(<S><IExtensionGeometry ID="x" @/></S>)", "NetVisibility",
                  [](TestScene& scene) { return scene.Get<IGeometry>("x").IsNetVisible(); }, kHelperAbsentShown},
        Attribute{"CalloutVisibility", R"(<S><IAnnotationCallout ID="x" @/></S>)", "Visibility",
                  [](TestScene& scene) { return scene.Get<IAnnotationCallout>("x").IsVisible(); }, kHelperAbsentShown},
        // Another file is the root, so that none is chosen.
        Attribute{"FileIsRoot", R"(<S><IFile ID="f" @/><IFile ID="g" IsRoot="1"/></S>)", "IsRoot",
                  [](TestScene& scene) { return scene.Get<IFile>("f").IsRoot(); }, kHelper},
        Attribute{"IsRootWhenTheStructureIsJudged",
                  R"(<S><IFile ID="f" @><ChildSet><A ID="a" Type="IAssembly"/></ChildSet></IFile>
                     <IFile ID="g"/></S>)",
                  "IsRoot", &Structure, kOneElseFalse},
        Attribute{"FeatureOverrideVisibility",
                  R"(<S><IAssembly ID="a"><ChildSet><IAssemblyFeatureOverride ID="o" @/></ChildSet></IAssembly></S>)",
                  "Visibility", [](TestScene& scene) { return scene.Get<IAssemblyFeatureOverride>("o").IsVisible(); },
                  kHelper},
        Attribute{"LayerVisibility", InPart(R"(<LayerSet><ILayer ID="l"><LayerInfo @/></ILayer></LayerSet>)"),
                  "Visibility", [](TestScene& scene) { return scene.Get<ILayer>("l").IsVisible(); },
                  kTrueWordOrNothing},
        Attribute{"CameraIsDepthFieldDefined", InPart(R"(<CameraSet><ICamera ID="k" Label="" @/></CameraSet>)"),
                  "IsDepthFieldDefined", &DepthField, NotZero(false)},
        Attribute{"ViewVisibility", InPart(R"(<ViewSet><IView ID="v" Label="" @/></ViewSet>)"), "Visibility",
                  [](TestScene& scene) { return scene.Get<IView>("v").IsVisible(); }, NotZero(true)},
        Attribute{"ViewIsActive", InPart(R"(<ViewSet><IView ID="v" Label="" @/></ViewSet>)"), "IsActive",
                  [](TestScene& scene) { return scene.Get<IView>("v").IsActive(); }, NotZero(true)},
        Attribute{"ViewMemberVisibility",
                  InPart(R"(<ViewSet><IView ID="v" Label=""><ViewMember><ViewMemberChild><EntityVisibility @/>
                            </ViewMemberChild></ViewMember></IView></ViewSet>)"),
                  "Visibility", [](TestScene& scene) { return scene.Get<IView>("v").EntityVisibilityAt(0); },
                  NotZero(false)},
        Attribute{"BoolProperty",
                  R"(<S><IPart ID="p"><FileProperties><CustomProperties><CustomProperty Key="k" Type="kBool" @/>
                     </CustomProperties></FileProperties></IPart></S>)",
                  "Value", &BoolProperty, kTrueWord}),
    [](auto const& test) { return std::string(test.param.name); });

}  // namespace KVR::Test
