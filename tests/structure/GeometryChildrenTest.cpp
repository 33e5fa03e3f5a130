// Points, clouds, sketches, sets, work features and callouts as children of assemblies and parts.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/structure/Answers.h"
#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

// One of each kind, in the order of the letters.
constexpr char kEach[] =
    "<IPoint ID='a'/><IPointCloud ID='b'/><IGeometricSet ID='c'/><ISketch ID='d' SketchTypeEnum='kSketchType_3D'/>"
    "<IExtensionGeometry ID='e'/><IWorkAxis ID='f'/><IWorkPlane ID='g'/><IWorkPoint ID='h'/>"
    "<IAnnotationCallout ID='i'/>";

constexpr char kBadSketch[] = "<ISketch ID='bad'><ChildSet><IPoint ID='left'/></ChildSet></ISketch>";

std::string Owner(std::string const& name, std::string const& content)
{
    return InScene("<" + name + " ID='o' Label=''>" + content + "</" + name + ">");
}

class GeometryChildren : public testing::TestWithParam<char const*>
{
protected:
    TestScene& Read(std::string const& content)
    {
        m_scene = std::make_unique<TestScene>(Owner(GetParam(), content));
        return m_scene->Begin();
    }

    std::unique_ptr<TestScene> m_scene;
};

}  // namespace

TEST_P(GeometryChildren, EachKindIsReadRegisteredAndListed)
{
    TestScene& scene = Read(std::string("<ChildSet>") + kEach + "</ChildSet>");
    EXPECT_THAT(scene.ChildIds("o"), ElementsAre("a", "b", "c", "d", "e", "f", "g", "h", "i"));
    EXPECT_NO_THROW(scene.Get<IPoint>("a"));
    EXPECT_NO_THROW(scene.Get<IPointCloud>("b"));
    EXPECT_NO_THROW(scene.Get<IGeometricSet>("c"));
    EXPECT_NO_THROW(scene.Get<ISketch>("d"));
    EXPECT_NO_THROW(scene.Get<IExtensionGeometry>("e"));
    EXPECT_NO_THROW(scene.Get<IWorkAxis>("f"));
    EXPECT_NO_THROW(scene.Get<IWorkPlane>("g"));
    EXPECT_NO_THROW(scene.Get<IWorkPoint>("h"));
    EXPECT_NO_THROW(scene.Get<IAnnotationCallout>("i"));
}

TEST_P(GeometryChildren, NamesAreExactAndAnElementOfACalloutIsNoChild)
{
    TestScene& scene =
        Read("<ChildSet><ipoint ID='a'/><IPOINTCLOUD ID='b'/><IAnnotationCalloutElement ID='c'/></ChildSet>");
    EXPECT_THAT(scene.ChildIds("o"), IsEmpty());
}

TEST_P(GeometryChildren, WhatAFailedSketchDefinesStaysRegistered)
{
    TestScene& scene = Read(std::string("<ChildSet><IPoint ID='a'/>") + kBadSketch + "<IPoint ID='b'/></ChildSet>");
    EXPECT_FALSE(scene.Has("bad"));
    EXPECT_TRUE(scene.Has("left"));
    EXPECT_FALSE(scene.Has("b")) << "the rest of the set is unread";
    EXPECT_THAT(scene.ChildIds("o"), ElementsAre("a"));
}

TEST_P(GeometryChildren, AChildReferenceFindsWhatWasReadBefore)
{
    TestScene& scene = Read(
        "<ChildSet><IGeometricSet ID='s'><ChildSet><IPoint ID='p'/></ChildSet></IGeometricSet><Child ID='p'/>"
        "<Child ID='later'/><IPoint ID='later'/></ChildSet>");
    EXPECT_THAT(scene.ChildIds("o"), ElementsAre("s", "p", "later"));
}

TEST_P(GeometryChildren, IdsAreMapped)
{
    TestScene scene(Owner(GetParam(), std::string("<ChildSet>") + kEach + "</ChildSet>"));
    EXPECT_THAT(scene.WithPrefix("n").Begin().ChildIds("n1"),
                ElementsAre("n2", "n3", "n4", "n5", "n6", "n7", "n8", "n9", "n10"));
}

TEST_P(GeometryChildren, AMeshThatNoStoreHoldsIsLeftOutAndTheChildBehindItIsRead)
{
    TestScene& scene = Read(
        "<ChildSet><IPoint ID='a'/><IPolygonMesh ID='none'/><IPoint ID='b'/></ChildSet><ChildSet><IPoint ID='c'/>"
        "</ChildSet><ChangeKey>k</ChangeKey>");
    EXPECT_FALSE(scene.Has("none"));
    EXPECT_THAT(scene.ChildIds("o"), ElementsAre("a", "b", "c"));
    UTF8String key;
    EXPECT_EQ(scene.Get<IComponent>("o").ChangeKey(kSnapshotVersion_Current, key), kIsValueSpecified_Yes);
}

TEST_P(GeometryChildren, ACurveWithoutAStoreIsNoPointEither)
{
    TestScene scene(Owner(GetParam(), "<ChildSet><ICurve ID='c'/><IPoint ID='p'/></ChildSet>"));
    scene.Begin();
    EXPECT_FALSE(scene.Has("c"));
    EXPECT_THAT(scene.ChildIds("o"), ElementsAre("p"));
}

INSTANTIATE_TEST_SUITE_P(Each, GeometryChildren, testing::Values("IAssembly", "IPart"),
                         [](auto const& test) { return std::string(test.param); });

TEST(PartChildSet, AFailedSketchStopsTheSetButTheNextSetIsRead)
{
    TestScene scene(Owner(
        "IPart", std::string("<UnitAndTolerance LengthUnit='kUnitType_Inch'/><ChildSet><IPoint ID='a'/>") + kBadSketch +
                     "<IPoint ID='b'/></ChildSet><ChildSet><IPoint ID='c'/></ChildSet>"
                     "<ChangeKey>k</ChangeKey>"));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("o"), ElementsAre("a", "c"));
    EXPECT_EQ(ChangeKeyOf(scene.Get<IPart>("o")), "k");
    EXPECT_EQ(AnswerOf(scene.Get<IPart>("o"), &IUnit::LengthUnit), kUnitType_Inch) << "the units are settled";
}

TEST(AssemblyChildSet, AFailedSketchEndsTheWholeAssembly)
{
    TestScene scene(
        Owner("IAssembly", std::string("<UnitAndTolerance LengthUnit='kUnitType_Inch'/><ChildSet><IPoint ID='a'/>") +
                               kBadSketch +
                               "<IPoint ID='b'/></ChildSet><ChildSet><IPoint ID='c'/></ChildSet>"
                               "<ChangeKey>k</ChangeKey>"));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("o"), ElementsAre("a"));
    EXPECT_EQ(ChangeKeyOf(scene.Get<IAssembly>("o")), std::nullopt);
    EXPECT_EQ(AnswerOf(scene.Get<IAssembly>("o"), &IUnit::LengthUnit), kUnitType_Unknown);
    EXPECT_FALSE(scene.Has("c"));
}

TEST(AssemblyChildSet, ASetThatEndedEarlyIsNoFailureOfItsOwner)
{
    // The sketch is no child of a geometric set; a curve without a store and a mesh without one are passed over.
    TestScene scene(Owner("IAssembly", std::string("<ChildSet><IGeometricSet ID='s'><ChildSet>") + kBadSketch +
                                           "<IPolygonMesh ID='m'/><ICurve ID='c'/><IPoint ID='p'/></ChildSet>"
                                           "</IGeometricSet><IPoint ID='b'/></ChildSet>"));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("o"), ElementsAre("s", "b"));
    EXPECT_EQ(scene.Get<IGeometricSet>("s").ChildCount(), 1U);
}

}  // namespace KVR::Test
