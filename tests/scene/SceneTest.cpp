#include "scene/Scene.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/scene/ModelScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> ComponentIds(KVR::Scene const& scene)
{
    std::vector<std::string> ids;
    for (SceneComponent const& component : scene.Components())
        ids.emplace_back(component.id);
    return ids;
}

// The children in words: the id, and of a placement its number.
std::vector<std::string> Children(SceneComponent const& component)
{
    std::vector<std::string> words;
    for (SceneChild const& child : component.children)
        words.push_back(std::string(child.id) + (child.object ? "" : " missing") +
                        (child.placement == kNoIndex ? "" : " #" + std::to_string(child.placement)));
    return words;
}

std::vector<std::string> GeometryIds(SceneComponent const& component)
{
    std::vector<std::string> ids;
    for (SceneGeometry const& geometry : component.geometry)
        ids.emplace_back(geometry.id);
    return ids;
}

}  // namespace

TEST(Scene, ComponentsStandBreadthFirstFromTheRootEachOnce)
{
    ModelScene const scene(File({"a"}) + Assembly("a", Instance("i1", "b") + Instance("i2", "p")) +
                           Assembly("b", Instance("i3", "q") + Instance("i4", "p")) + Part("p") + Part("q") +
                           Part("loose"));
    EXPECT_THAT(ComponentIds(scene.Model()), ElementsAre("f", "a", "b", "p", "q"));
    EXPECT_EQ(scene.Model().Root(), 0U);
    EXPECT_EQ(scene.Component("f").kind, SceneComponent::Kind::kFile);
    EXPECT_EQ(scene.Component("a").kind, SceneComponent::Kind::kAssembly);
    EXPECT_EQ(scene.Component("p").kind, SceneComponent::Kind::kPart);
    EXPECT_EQ(scene.Component("p").label, "Label of p");
    EXPECT_EQ(scene.Component("p").object, scene.Component("p").object);
}

TEST(Scene, ARootThatIsNoComponentLeavesItEmpty)
{
    for (char const* const id : {"", "nothing", "point", "i"})
    {
        TestScene scene("<Scene>" + File({"a"}) + Assembly("a", Instance("i", "p")) + Part("p", Point("point")) +
                        "</Scene>");
        scene.Begin();
        KVR::Scene const model(scene.Producer(), id);
        EXPECT_EQ(model.Root(), kNoIndex) << id;
        EXPECT_THAT(model.Components(), IsEmpty()) << id;
        EXPECT_THAT(PathsOf(model), IsEmpty()) << id;
    }
}

TEST(Scene, AnyComponentMayBeTheRoot)
{
    TestScene scene("<Scene>" + File({"a"}) + Assembly("a", Instance("i", "p")) + Part("p") + "</Scene>");
    scene.Begin();
    KVR::Scene const model(scene.Producer(), "a");
    EXPECT_THAT(ComponentIds(model), ElementsAre("a", "p"));
    EXPECT_THAT(PathsOf(model), ElementsAre("a", "i"));
}

TEST(Scene, AnInstanceIsAPlacementWithItsTargetTransformAndVisibility)
{
    ModelScene const scene(File({"a"}) + Assembly("a", MovedInstance("i", "p", 7) + HiddenInstance("j", "p")) +
                           Part("p"));
    ScenePlacement const& i = scene.Placement("a", "i");
    EXPECT_EQ(i.label, "Label of i");
    EXPECT_EQ(scene.Model().Components()[i.target].id, "p");
    EXPECT_EQ(i.transform, (Matrix{1, 0, 0, 7, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
    EXPECT_TRUE(i.isVisible);
    EXPECT_TRUE(i.IsEntered());
    ASSERT_TRUE(i.object);
    EXPECT_EQ(Text(i.object->Id()), "i");
    ScenePlacement const& j = scene.Placement("a", "j");
    EXPECT_EQ(j.transform, kIdentity);
    EXPECT_FALSE(j.isVisible);
}

TEST(Scene, AFilePlacesComponentsWithoutInstances)
{
    ModelScene const scene(File({"p"}) + Part("p"));
    ScenePlacement const& placement = scene.Component("f").placements.at(0);
    EXPECT_EQ(placement.object, nullptr);
    EXPECT_EQ(placement.id, "");
    EXPECT_EQ(placement.target, 1U);
    EXPECT_EQ(placement.transform, kIdentity);
}

TEST(Scene, ChildrenStandInTheirOrderWithWhatIsNoPlacement)
{
    ModelScene const scene(
        File({"a", "ghost"}) +
        Assembly("a", Point("g") + Instance("i", "p") + "<IAssemblyFeatureOverride ID='o'/>" + Instance("j", "p")) +
        Part("p"));
    EXPECT_THAT(Children(scene.Component("a")), ElementsAre("g", "i #0", "o", "j #1"));
    EXPECT_THAT(GeometryIds(scene.Component("a")), ElementsAre("g"));
}

TEST(Scene, UnitsAreThoseStatedOrThatOfTheFirstThatStatesOne)
{
    ModelScene const scene(
        "<IFile ID='f' IsRoot='1'><ChildSet><Child ID='a'/></ChildSet></IFile>" +
        Assembly("a", Instance("i", "p") + Instance("j", "q"), "<Unit LengthUnit='kUnitType_Inch'/>") +
        Part("p", Point("x"), "<Unit LengthUnit='kUnitType_Meter'/>") + Part("q", Point("y")));
    EXPECT_EQ(scene.Model().Unit(), kUnitType_Inch);
    EXPECT_EQ(scene.Model().MetresPerUnit(), 0.0254);
    EXPECT_EQ(scene.Component("f").metresPerUnit, 0.0254);
    EXPECT_EQ(scene.Component("f").unit, kUnitType_Unknown);
    EXPECT_EQ(scene.Component("p").metresPerUnit, 1.0);
    EXPECT_EQ(scene.Component("p").unit, kUnitType_Meter);
    EXPECT_EQ(scene.Component("q").metresPerUnit, 0.0254);
    EXPECT_EQ(scene.Geometry("p", "x").metresPerUnit, 1.0);
    EXPECT_EQ(scene.Geometry("q", "y").metresPerUnit, 0.0254);
}

TEST(Scene, WithoutAnyUnitItIsInMillimetres)
{
    ModelScene const scene("<IFile ID='f' IsRoot='1'><ChildSet><Child ID='p'/></ChildSet></IFile>" + Part("p"));
    EXPECT_EQ(scene.Model().Unit(), kUnitType_Millimeter);
    EXPECT_EQ(scene.Component("p").metresPerUnit, 1e-3);
}

TEST(Scene, GeometryIsToldApartByKind)
{
    ModelScene const scene(
        File({"p"}) +
        Part("p", Point("point") + "<IPointCloud ID='cloud'/><IWorkPoint ID='work'><WorkPoint X='1'/></IWorkPoint>"
                                   "<IAnnotationCallout ID='note'/>"));
    EXPECT_EQ(scene.Geometry("p", "point").kind, GeometryKind::kPoint);
    EXPECT_TRUE(scene.Geometry("p", "point").point);
    EXPECT_EQ(scene.Geometry("p", "point").className, "IPoint");
    EXPECT_EQ(scene.Geometry("p", "cloud").kind, GeometryKind::kCloud);
    EXPECT_TRUE(scene.Geometry("p", "cloud").cloud);
    EXPECT_EQ(scene.Geometry("p", "work").kind, GeometryKind::kOther);
    EXPECT_EQ(scene.Geometry("p", "note").kind, GeometryKind::kOther);
    EXPECT_EQ(scene.Geometry("p", "note").className, "IAnnotationCallout");
    EXPECT_EQ(scene.Geometry("p", "point").body, nullptr);
}

TEST(Scene, WhatStandsInSetsOfGeometryIsTheComponentsOwnPlacedByTheSets)
{
    std::string const move = "<Transform>1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 1</Transform>";
    ModelScene const scene(File({"p"}) +
                           Part("p", "<IGeometricSet ID='s' Visibility='1'>" + move + "<ChildSet>" + Point("x", move) +
                                         "<IGeometricSet ID='t' Visibility='0'><ChildSet>" + Point("y") +
                                         "</ChildSet></IGeometricSet></ChildSet>"
                                         "</IGeometricSet>"));
    EXPECT_THAT(GeometryIds(scene.Component("p")), ElementsAre("x", "y"));
    EXPECT_EQ(scene.Geometry("p", "x").transform[3], 10.0);
    EXPECT_TRUE(scene.Geometry("p", "x").isVisible);
    EXPECT_EQ(scene.Geometry("p", "y").transform[3], 5.0);
    EXPECT_FALSE(scene.Geometry("p", "y").isVisible);
}

TEST(Scene, AMeshKnowsItsBody)
{
    ModelScene const scene(File({"p"}) + Part("p", Body("b") + Body("c") + MeshOf("m", "b")), {}, {"m"});
    EXPECT_EQ(scene.Geometry("p", "m").kind, GeometryKind::kMesh);
    EXPECT_TRUE(scene.Geometry("p", "m").mesh);
    EXPECT_EQ(scene.Geometry("p", "m").bodyId, "b");
    EXPECT_EQ(scene.Geometry("p", "b").kind, GeometryKind::kBody);
    EXPECT_TRUE(scene.Geometry("p", "b").body);
    EXPECT_TRUE(scene.Geometry("p", "b").hasMesh);
    EXPECT_FALSE(scene.Geometry("p", "c").hasMesh);
    EXPECT_FALSE(scene.Geometry("p", "m").hasMesh);
}

TEST(Scene, StylesAreReadOnceAndAnUnknownOneHasItsIdAlone)
{
    ModelScene const scene(
        File({"a"},
             "<StyleSet><IRenderStyle ID='red' Label='Red'><DiffuseColor FractionRed='1' FractionGreen='0' "
             "FractionBlue='2' FractionAlpha='0.5'/><ExtensionData TypeId='gltf.pbrMetallicRoughness' "
             "Content='{\"metallicFactor\":0.25,\"roughnessFactor\":7}'/></IRenderStyle></StyleSet>") +
        Assembly("a", StyledInstance("i", "p", "red") + StyledInstance("j", "p", "ghost") + Instance("k", "p")) +
        Part("p"));
    SceneStyle const* const red = scene.Model().StyleOf("red");
    ASSERT_TRUE(red);
    EXPECT_EQ(red->label, "Red");
    EXPECT_EQ(red->diffuse, (std::array<double, 3>{1.0, 0.0, 1.0}));
    EXPECT_EQ(red->opacity, 0.5);
    EXPECT_EQ(red->metallic, 0.25);
    EXPECT_EQ(red->roughness, 1.0);
    EXPECT_EQ(scene.Placement("a", "i").style, red);
    SceneStyle const* const ghost = scene.Placement("a", "j").style;
    ASSERT_TRUE(ghost);
    EXPECT_EQ(ghost->id, "ghost");
    EXPECT_EQ(ghost->label, "");
    EXPECT_FALSE(ghost->diffuse);
    EXPECT_EQ(scene.Placement("a", "k").style, nullptr);
    EXPECT_EQ(scene.Model().StyleOf("nobody"), nullptr);
    EXPECT_EQ(scene.Model().Styles().size(), 2U);
}

TEST(Scene, OfMetalAndRoughnessOnlyNumbersOfTheObjectItselfCount)
{
    using Pair = std::pair<std::optional<double>, std::optional<double>>;
    std::vector<std::pair<std::string, Pair>> const cases = {
        {R"({"metallicFactor":1,"roughnessFactor":-3})", {1.0, 0.0}},
        {R"({"roughnessFactor":0.5})", {std::nullopt, 0.5}},
        {R"({"metallicFactor":0.5,"metallicFactor":0.25})", {0.25, std::nullopt}},
        {R"({"metallicFactor":0.5,"metallicFactor":"1"})", {}},
        {R"({"metallicFactor":0.5,"metallicFactor":[1],"roughnessFactor":null})", {}},
        {R"({"more":{"metallicFactor":0.5},"roughnessFactor":true})", {}},
        {R"({"metallicFactor":{"roughnessFactor":1}})", {}},
        {R"([{"metallicFactor":0.5}])", {}},
        {R"("metallicFactor")", {}},
        {R"({"metallicFactor":0.5)", {}},
        {"", {}},
    };
    for (auto const& [text, expected] : cases)
    {
        ModelScene const scene(File({"a"},
                                    "<StyleSet><IRenderStyle ID='s'><ExtensionData "
                                    "TypeId='gltf.pbrMetallicRoughness' Content='" +
                                        text + "'/></IRenderStyle></StyleSet>") +
                               Assembly("a", StyledInstance("i", "p", "s")) + Part("p"));
        SceneStyle const* const style = scene.Model().StyleOf("s");
        ASSERT_TRUE(style);
        EXPECT_EQ(Pair(style->metallic, style->roughness), expected) << text;
    }
}

TEST(Scene, LayersGroupsAndLevelsOfDetailAreThoseDeclared)
{
    ModelScene const scene(
        File({"p"},
             "<LayerSet><ILayer ID='l' Label='Layer'><LayerInfo ID='3' Description='says' Visibility='False'/>"
             "<GeometryItems Items='x,ghost'/><Styles><StyleRef ID='red'/></Styles></ILayer></LayerSet>"
             "<GroupSet><IGroup ID='g' Label='Group'><GeometryItems Items='x'/></IGroup></GroupSet>"
             "<LodSet><ILod ID='d' Label='Level' Description='coarse'/></LodSet>") +
        Part("p", Point("x")));
    ASSERT_EQ(scene.Model().Layers().size(), 1U);
    SceneLayer const& layer = scene.Model().Layers()[0];
    EXPECT_EQ(layer.id, "l");
    EXPECT_EQ(layer.label, "Layer");
    EXPECT_EQ(layer.number, 3);
    EXPECT_EQ(layer.description, "says");
    EXPECT_FALSE(layer.isVisible);
    EXPECT_EQ(layer.style, scene.Model().StyleOf("red"));
    EXPECT_THAT(layer.items, ElementsAre("x", "ghost"));
    ASSERT_EQ(scene.Model().Groups().size(), 1U);
    EXPECT_EQ(scene.Model().Groups()[0].label, "Group");
    EXPECT_THAT(scene.Model().Groups()[0].items, ElementsAre("x"));
    ASSERT_EQ(scene.Model().Lods().size(), 1U);
    EXPECT_EQ(scene.Model().Lods()[0].id, "d");
    EXPECT_EQ(scene.Model().Lods()[0].label, "Level");
    EXPECT_EQ(scene.Model().Lods()[0].description, "coarse");
}

TEST(Scene, PropertiesHaveValuesOfTheirTypes)
{
    ModelScene const scene(File({"p"}) + Part("p", {},
                                              "<FileProperties><CustomProperties>"
                                              "<CustomProperty Key='s' Type='kString' Value='text'/>"
                                              "<CustomProperty Key='i' Type='kInt' Value='7'/>"
                                              "<CustomProperty Key='d' Type='kDouble' Value='1.5'/>"
                                              "<CustomProperty Key='n' Type='kDouble' Value='nan'/>"
                                              "<CustomProperty Key='b' Type='kBool' Value='True'/>"
                                              "<CustomProperty Key='t' Type='kTime' Value='2024-03-01T12:30:00Z'/>"
                                              "</CustomProperties></FileProperties>"));
    auto const find = [&](std::string_view name) -> SceneProperty const&
    {
        for (SceneProperty const& property : scene.Component("p").properties)
            if (property.name == name)
                return property;
        throw std::runtime_error("no such property");
    };
    EXPECT_EQ(std::get<std::string>(find("s").value), "text");
    EXPECT_EQ(std::get<int>(find("i").value), 7);
    EXPECT_EQ(std::get<double>(find("d").value), 1.5);
    EXPECT_EQ(std::get<bool>(find("b").value), true);
    EXPECT_EQ(std::get<std::tm>(find("t").value).tm_hour, 12);
    EXPECT_EQ(NumberOf(find("i")), 7.0);
    EXPECT_EQ(NumberOf(find("d")), 1.5);
    EXPECT_EQ(NumberOf(find("s")), std::nullopt);
    EXPECT_EQ(NumberOf(find("b")), std::nullopt);
    EXPECT_TRUE(scene.Component("p").fileProperties);
    EXPECT_EQ(scene.Component("f").fileProperties, nullptr);
}

TEST(Scene, PropertiesOfTheDatabaseAreValuesInTheObjectsOrder)
{
    TestScene source("<Scene><IUniverse/>" + File({"a"}) + Assembly("a", Instance("i", "p")) + Part("p") + "</Scene>");
    source.WithFile("scene.kvrproperty",
                    "<P><Property ID='p1' ObjectID='i' Name='first' Value='v'/>"
                    "<Property ID='p2' ObjectID='i' Name='second' Value='w'/></P>");
    source.Begin();
    KVR::Scene const scene(source.Producer(), "f");
    std::vector<SceneProperty> const properties = scene.PropertiesOf(*scene.Components()[1].placements.at(0).object);
    ASSERT_EQ(properties.size(), 2U);
    EXPECT_EQ(properties[0].name, "first");
    EXPECT_EQ(std::get<std::string>(properties[0].value), "v");
    EXPECT_EQ(properties[1].name, "second");
    EXPECT_THAT(scene.PropertiesOf(*scene.Components()[2].object), IsEmpty());
}

TEST(Scene, TheUniverseStatesUpAndTheColourOfCurves)
{
    ModelScene const plain(File({"p"}) + Part("p"));
    EXPECT_EQ(plain.Model().UpVector(), (std::array<double, 3>{0.0, 0.0, 1.0}));
    EXPECT_EQ(plain.Model().DefaultCurveColor(), (std::array<double, 3>{0.0, 0.0, 0.0}));
    EXPECT_EQ(plain.Model().DefaultSurfaceColor(), (std::array<double, 3>{0.7, 0.7, 0.7}));
    EXPECT_THAT(plain.Model().PropertiesOf(*plain.Component("p").object), IsEmpty());
    ModelScene const stated(
        "<IUniverse><ViewData><UpVector>0,2,0</UpVector><FrontVector>1,0,0</FrontVector></ViewData>"
        "<DefaultCurveColor FractionRed='0.25' FractionGreen='2' FractionBlue='0'/></IUniverse>" +
        File({"p"}) + Part("p"));
    EXPECT_EQ(stated.Model().UpVector(), (std::array<double, 3>{0.0, 1.0, 0.0}));
    EXPECT_EQ(stated.Model().DefaultCurveColor(), (std::array<double, 3>{0.25, 1.0, 0.0}));
}

TEST(Scene, AMovedSceneKeepsItsTexts)
{
    ModelScene scene(File({"p"}) + Part("p"));
    TestScene source("<Scene>" + File({"p"}) + Part("p") + "</Scene>");
    source.Begin();
    KVR::Scene first(source.Producer(), "f");
    std::string_view const label = first.Components()[1].label;
    KVR::Scene const second(std::move(first));
    EXPECT_EQ(second.Components()[1].label.data(), label.data());
    EXPECT_EQ(label, "Label of p");
}

}  // namespace KVR::Test
