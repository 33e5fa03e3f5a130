#include "structure/XMLAssemblyFeatureOverride.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "framework/xml_util/XMLStrUtil.h"
#include "mesh/XMLPolygonMesh.h"
#include "tests/structure/Answers.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

constexpr char kBadIndex[] = "invalid vector<T> subscript";

std::string const kStore =
    MeshInfoHeader(3).Bytes() + TriangleRecord("m1") + TriangleRecord("m2") + RecordFront(2, "c") + VertexBytes(2);

// An assembly "top" with an override "o", in a scene whose store holds the meshes "m1" and "m2" and the curve "c", and
// which has a part "x".
class OverrideScene
{
public:
    explicit OverrideScene(std::string const& content, std::string const& attributes = "", char const* prefix = nullptr)
        : m_scene(std::string("<Scene>") + kMeshInfo +
                  "<IAssembly ID='top'><ChildSet><IAssemblyFeatureOverride ID='o' " + attributes + ">" + content +
                  "</IAssemblyFeatureOverride></ChildSet></IAssembly><IPart ID='x'/></Scene>")
    {
        if (prefix)
            m_scene.WithPrefix(prefix);
        m_scene.WithFile("s.mesh", kStore).Begin();
    }
    TestScene& Scene() { return m_scene; }
    IAssemblyFeatureOverride& operator*() { return m_scene.Get<IAssemblyFeatureOverride>("o"); }
    IAssemblyFeatureOverride* operator->() { return &**this; }

    std::vector<std::string> Children()
    {
        std::vector<std::string> ids;
        for (unsigned long long i = 0; i < (*this)->ChildCount(); ++i)
            ids.push_back(Text((*this)->ChildAt(i).Id()));
        return ids;
    }

    std::vector<std::vector<std::string>> Paths()
    {
        OccurrencePathCollection paths;
        (*this)->BaseOccPaths(paths);
        std::vector<std::vector<std::string>> told;
        for (unsigned long long i = 0; i < paths.Size(); ++i)
            told.push_back(Ids(paths.At(i)));
        return told;
    }

private:
    TestScene m_scene;
};

std::string Children(std::string const& content)
{
    return "<ChildSet>" + content + "</ChildSet>";
}

}  // namespace

TEST(XMLAssemblyFeatureOverride, WithTheIdAloneItIsHiddenAndEmpty)
{
    OverrideScene o("");
    EXPECT_EQ(Text(o->Id()), "o");
    EXPECT_EQ(Text(o->Label()), "");
    EXPECT_FALSE(o->IsVisible());
    EXPECT_EQ(o->ChildCount(), 0U);
    EXPECT_THAT(o.Paths(), IsEmpty());
    EXPECT_EQ(ChangeKeyOf(*o), std::nullopt);
    EXPECT_EQ(TextOf(*o, &IAssemblyFeatureOverride::VersionPersistentId), std::nullopt);
    EXPECT_TRUE(o->PropertyIds().IsEmpty());
    EXPECT_FALSE(o->IsThreadSafe());
    EXPECT_THAT(o.Scene().ChildIds("top"), ElementsAre("o"));
}

TEST(XMLAssemblyFeatureOverride, EverythingIsRead)
{
    OverrideScene o(
        "<BaseOccPaths><BaseOccPath Path='[a][b]'/><BaseOccPath Path='[c]'/></BaseOccPaths>" +
            Children("<IPolygonMesh ID='m1'/><IPolygonMesh ID='m2'/>") +
            "<ChangeKey>k</ChangeKey><ExtensionData TypeId='t' Content='1'/><ExtensionData TypeId='u' Content='2'/>",
        "Label='L' Visibility='1' VersionPersistentId='v'");
    EXPECT_EQ(Text(o->Label()), "L");
    EXPECT_TRUE(o->IsVisible());
    EXPECT_EQ(TextOf(*o, &IAssemblyFeatureOverride::VersionPersistentId), "v");
    EXPECT_THAT(o.Paths(), ElementsAre(ElementsAre("a", "b"), ElementsAre("c")));
    EXPECT_THAT(o.Children(), ElementsAre("m1", "m2"));
    EXPECT_TRUE(o.Scene().Has("m1"));
    EXPECT_EQ(ChangeKeyOf(*o), "k");
    EXPECT_EQ(ExtensionTextOf(*o, "t"), "1") << "every content is added";
    EXPECT_EQ(ExtensionTextOf(*o, "u"), "2");
}

TEST(XMLAssemblyFeatureOverride, VisibilityIsOneOrTheWordTrueInAnyCase)
{
    for (char const* const text : {"1", "true", "True"})
        EXPECT_TRUE(OverrideScene("", std::string("Visibility='") + text + "'")->IsVisible()) << text;
    for (char const* const text : {"0", "2", "", "yes"})
        EXPECT_FALSE(OverrideScene("", std::string("Visibility='") + text + "'")->IsVisible()) << text;
}

TEST(XMLAssemblyFeatureOverride, EveryAttributeOfABasePathIsAPath)
{
    OverrideScene o("<BaseOccPaths><BaseOccPath A='[a]' B='[b][c]'/></BaseOccPaths>");
    EXPECT_THAT(o.Paths(), testing::UnorderedElementsAre(ElementsAre("a"), ElementsAre("b", "c")));
}

TEST(XMLAssemblyFeatureOverride, BasePathsAreReadInAnyCaseAndEachPathInOneCaseAlone)
{
    OverrideScene o(
        "<baseoccpaths><BaseOccPath Path='[a]'/><baseoccpath Path='[b]'/><Other Path='[c]'/></baseoccpaths>");
    EXPECT_THAT(o.Paths(), ElementsAre(ElementsAre("a")));
}

TEST(XMLAssemblyFeatureOverride, ABasePathWithoutAttributesAddsNone)
{
    OverrideScene o("<BaseOccPaths><BaseOccPath/><BaseOccPath Path='[a]'/></BaseOccPaths>");
    EXPECT_THAT(o.Paths(), ElementsAre(ElementsAre("a")));
}

TEST(XMLAssemblyFeatureOverride, RepeatedAndEmptyBasePathsStay)
{
    OverrideScene o(
        "<BaseOccPaths><BaseOccPath P='[a]'/><BaseOccPath P=''/></BaseOccPaths>"
        "<BASEOCCPATHS><BaseOccPath P='[a]'/></BASEOCCPATHS>");
    EXPECT_THAT(o.Paths(), ElementsAre(ElementsAre("a"), IsEmpty(), ElementsAre("a")));
}

TEST(XMLAssemblyFeatureOverride, ChildrenOfOtherKindsAreSkipped)
{
    OverrideScene o(
        Children("<ICurve ID='c'/><IInstance ID='i'><Child ID='x'/></IInstance><IPolygonMesh ID='m1'/><Child ID='m1'/>"
                 "<IAssemblyFeatureOverride ID='inner'/><IPolygonMesh ID='m2'/>"));
    EXPECT_THAT(o.Children(), ElementsAre("m1", "m2"));
    for (char const* const id : {"c", "i", "inner"})
        EXPECT_FALSE(o.Scene().Has(id)) << id;
}

// What the skipped elements name is there: elsewhere in an assembly they make children.
TEST(XMLAssemblyFeatureOverride, TheSkippedChildrenAreReadInTheAssembly)
{
    TestScene scene(std::string("<Scene>") + kMeshInfo +
                    "<IAssembly ID='top'><ChildSet><ICurve ID='c'/><IInstance ID='i'><Child ID='x'/></IInstance>"
                    "</ChildSet></IAssembly><IPart ID='x'/></Scene>");
    scene.WithFile("s.mesh", kStore).Begin();
    EXPECT_THAT(scene.ChildIds("top"), ElementsAre("c", "i"));
}

TEST(XMLAssemblyFeatureOverride, ABodyIsReadRegisteredAndListedInDocumentOrder)
{
    OverrideScene o(Children("<IPolygonMesh ID='m1'/><IBrep ID='b' Label='body'/><IPolygonMesh ID='m2'/>"));
    EXPECT_THAT(o.Children(), ElementsAre("m1", "b", "m2"));
    EXPECT_EQ(Text(o.Scene().Get<IBrep>("b").Label()), "body");
}

TEST(XMLAssemblyFeatureOverride, ABodyThatIsThereAlreadyIsListedAndKept)
{
    OverrideScene o(Children("<IBrep ID='b' Label='one'/><IBrep ID='b' Label='two'/>"));
    EXPECT_THAT(o.Children(), ElementsAre("b", "b"));
    EXPECT_EQ(Text(o.Scene().Get<IBrep>("b").Label()), "one");
}

TEST(XMLAssemblyFeatureOverride, AChildThatFailsIsLeftOutAndTheNextIsRead)
{
    OverrideScene o(Children("<IPolygonMesh ID='lost'/><IPolygonMesh ID='m1'/>") + Children("<IPolygonMesh ID='m2'/>"));
    EXPECT_THAT(o.Children(), ElementsAre("m1", "m2"));
}

TEST(XMLAssemblyFeatureOverride, WhatStandsBehindItInTheAssemblyIsRead)
{
    TestScene scene(InScene("<IAssembly ID='a'>" + Children("<IAssemblyFeatureOverride ID='o'/><IPoint ID='p'/>") +
                            "</IAssembly>"));
    EXPECT_THAT(scene.Begin().ChildIds("a"), ElementsAre("o", "p"));
}

TEST(XMLAssemblyFeatureOverride, TheNameOfTheChildSetCountsExactly)
{
    EXPECT_THAT(OverrideScene("<childset><IPolygonMesh ID='m1'/></childset>").Children(), IsEmpty());
}

TEST(XMLAssemblyFeatureOverride, ABadChildIndexIsOutOfRange)
{
    OverrideScene o(Children("<IPolygonMesh ID='m1'/>"));
    EXPECT_THAT([&] { o->ChildAt(1); }, ThrowsMessage<std::out_of_range>(kBadIndex));
}

TEST(XMLAssemblyFeatureOverride, UnderAPrefixItsIdAndItsPathsStayAsWritten)
{
    OverrideScene o("<BaseOccPaths><BaseOccPath P='[top][m1]'/></BaseOccPaths>", "", "n");
    EXPECT_EQ(Text(o->Id()), "o");
    EXPECT_THAT(o.Paths(), ElementsAre(ElementsAre("top", "m1")));
    EXPECT_THAT(o.Scene().ChildIds("n1"), ElementsAre("o"));
}

TEST(XMLAssemblyFeatureOverride, UnderAPrefixTheIdsOfItsChildrenAreMapped)
{
    OverrideScene o(Children("<IPolygonMesh ID='m1'/><IBrep ID='b'/>"), "", "n");
    EXPECT_THAT(o.Children(), ElementsAre("n2", "n3"));
    EXPECT_NO_THROW(o.Scene().Get<IPolygonMesh>("n2"));
    EXPECT_NO_THROW(o.Scene().Get<IBrep>("n3"));
}

TEST(XMLAssemblyFeatureOverride, APartPassesOverIt)
{
    TestScene scene(InScene("<IPart ID='p'><ChildSet><IAssemblyFeatureOverride ID='o'/></ChildSet></IPart>"));
    EXPECT_FALSE(scene.Begin().Has("o"));
}

TEST(XMLAssemblyFeatureOverride, UnderTheRootItMakesNoObject)
{
    TestScene scene(InScene("<IAssemblyFeatureOverride ID='o'/><IPart ID='p'/>"));
    EXPECT_FALSE(scene.Begin().Has("o"));
}

TEST(XMLAssemblyFeatureOverride, WithoutAnIdItHasTheEmptyOne)
{
    TestScene scene(
        InScene("<IAssembly ID='top'><ChildSet><IAssemblyFeatureOverride Label='nameless'/></ChildSet></IAssembly>"));
    scene.Begin();
    EXPECT_EQ(Text(scene.Get<IAssemblyFeatureOverride>("").Label()), "nameless");
}

TEST(XMLAssemblyFeatureOverride, WhatIsNoElementIsRefused)
{
    XMLAssemblyFeatureOverride o(nullptr);
    BodyEntities bodyEntities;
    MeshStore meshStore;
    EXPECT_FALSE(o.ReadFromXML(nullptr, bodyEntities, meshStore));
    ParsedDocument const document("<S>text<?instruction?><!--comment--></S>");
    for (xercesc::DOMNode* node = document.Root()->getFirstChild(); node; node = node->getNextSibling())
        EXPECT_FALSE(o.ReadFromXML(node, bodyEntities, meshStore))
            << Text(XMLStrUtil::XMLStrToAStr(node->getNodeName()));
    EXPECT_FALSE(o.ReadFromXML(&document.Document(), bodyEntities, meshStore));
    EXPECT_TRUE(o.ReadFromXML(document.Root(), bodyEntities, meshStore)) << "an element without attributes will do";
}

}  // namespace KVR::Test
