#include "structure/ObjectSetsReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/organisation/SetScene.h"
#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// All sets that hold organisation, with ids that begin with the letter.
std::string AllSets(std::string const& letter)
{
    return "<AttributeSet><ViewSet><IView ID='" + letter + "view' Label=''><CameraSet><CameraRef ID='" + letter +
           "camera'/></CameraSet></IView></ViewSet><CameraSet><ICamera ID='" + letter +
           "camera' Label=''/></CameraSet><LodSet><ILod ID='" + letter + "lod'/></LodSet><GroupSet><IGroup ID='" +
           letter + "group' Label=''/></GroupSet><LayerSet><ILayer ID='" + letter +
           "layer'/></LayerSet></AttributeSet>";
}

void ExpectAllSets(TestScene& scene, IAttributeSets const& owner, std::string const& letter)
{
    EXPECT_THAT(Ids(owner.LayerSet()), ElementsAre(letter + "layer"));
    EXPECT_THAT(Ids(owner.GroupSet()), ElementsAre(letter + "group"));
    EXPECT_THAT(Ids(owner.LodSet()), ElementsAre(letter + "lod"));
    EXPECT_THAT(Ids(owner.CameraSet()), ElementsAre(letter + "camera"));
    EXPECT_THAT(Ids(owner.ViewSet()), ElementsAre(letter + "view"));
    EXPECT_NO_THROW(scene.Get<ILayer>((letter + "layer").c_str()));
    EXPECT_NO_THROW(scene.Get<IGroup>((letter + "group").c_str()));
    EXPECT_NO_THROW(scene.Get<ILod>((letter + "lod").c_str()));
    EXPECT_NO_THROW(scene.Get<ICamera>((letter + "camera").c_str()));
    EXPECT_THAT(Ids(scene.Get<IView>((letter + "view").c_str()).CameraSet()), ElementsAre(letter + "camera"));
}

}  // namespace

TEST(AttributeSet, FileAssemblyAndPartHaveAllSetsAtOnce)
{
    TestScene scene("<Scene><IFile ID='f'>" + AllSets("f") + "</IFile><IAssembly ID='m'>" + AllSets("m") +
                    "</IAssembly><IPart ID='p'>" + AllSets("p") + "</IPart></Scene>");
    scene.Begin();
    ExpectAllSets(scene, scene.Get<IFile>("f"), "f");
    ExpectAllSets(scene, scene.Get<IAssembly>("m"), "m");
    ExpectAllSets(scene, scene.Get<IPart>("p"), "p");
}

TEST(AttributeSet, SetsOfOneKindAddUpAndAnIdCountsOnce)
{
    SetScene scene(
        "<LayerSet><ILayer ID='l1'/></LayerSet><LayerSet><ILayer ID='l2'/><ILayer ID='l1'/></LayerSet>"
        "<CameraSet><ICamera ID='k1'/></CameraSet><CameraSet><ICamera ID='k1'/><ICamera ID='k2'/></CameraSet>");
    EXPECT_THAT(Ids(scene.Owner().LayerSet()), ElementsAre("l1", "l2"));
    EXPECT_THAT(Ids(scene.Owner().CameraSet()), ElementsAre("k1", "k2"));
}

TEST(AttributeSet, CamerasAreReadBehindTheOtherSetsAndViewsLast)
{
    // All have one id: the set that is read first has the object.
    SetScene layer(
        "<ViewSet><IView ID='x'/></ViewSet><CameraSet><ICamera ID='x'/></CameraSet><LayerSet><ILayer ID='x'/>"
        "</LayerSet>");
    EXPECT_NO_THROW(layer.Get<ILayer>("x"));
    SetScene camera("<ViewSet><IView ID='x'/></ViewSet><CameraSet><ICamera ID='x'/></CameraSet>");
    EXPECT_NO_THROW(camera.Get<ICamera>("x"));
    EXPECT_THAT(Ids(camera.Owner().ViewSet()), ElementsAre("x"));
}

TEST(AttributeSet, OtherSetsAreReadInTheOrderOfTheDocument)
{
    SetScene scene("<LodSet><ILod ID='x'/></LodSet><LayerSet><ILayer ID='x'/></LayerSet>");
    EXPECT_NO_THROW(scene.Get<ILod>("x"));
    EXPECT_THAT(Ids(scene.Owner().LayerSet()), ElementsAre("x"));
}

TEST(AttributeSet, NamesOfSetsCountExactly)
{
    SetScene scene("<layerset><ILayer ID='l'/></layerset><Layers><ILayer ID='l'/></Layers>");
    EXPECT_FALSE(scene.Has("l"));
}

TEST(AttributeSet, ACameraRefOutsideAViewMakesACameraOfItsId)
{
    // The set of a view and that of an owner have one name and are different elements.
    SetScene scene("<CameraSet><CameraRef ID='k'/></CameraSet>");
    EXPECT_NO_THROW(scene.Get<ICamera>("k"));
}

}  // namespace KVR::Test
