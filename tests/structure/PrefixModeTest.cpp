// Which ids become new ones when the host sets a prefix, and which stay as they are written.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <map>
#include <memory>
#include <set>

#include "framework/kernel/entity.h"
#include "structure/XMLFile.h"
#include "tests/structure/Answers.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::SizeIs;

// Ids whose order tells when they are read: the parts first, then the assembly, and the file last.
constexpr char const* kScene =
    "<IUniverse><CustomData><CustomDataItem Type='9' Key='a-part'><ID Value='a-part'/><ID Value='s1'/>"
    "</CustomDataItem></CustomData></IUniverse>"
    "<IPart ID='a-part' Label='part' VersionPersistentId='a-part'><Styles><StyleRef ID='s1'/></Styles>"
    "<ExtensionData TypeId='a-part' Content='a-part' OccurrencePath='[a-part][s1]'/></IPart>"
    "<IPart ID='b-part' Label='other part'><ChildSet><Child ID='a-part'/></ChildSet></IPart>"
    "<IAssembly ID='m' Label='assembly'><Styles><StyleRef ID='s2'/><StyleRef ID='s1'/></Styles>"
    "<ChildSet><IInstance ID='i' Label='instance'><Child ID='a-part'/><Styles><StyleRef ID='s1'/></Styles>"
    "<NetStyles><StyleRef ID='s2'/><StyleRef ID='s3'/></NetStyles></IInstance><Child ID='b-part'/></ChildSet>"
    "<CrossLevelAttributes><Styles><EntityStyles Path='[i][a-part]'><Styles><StyleRef ID='s1'/></Styles>"
    "<NetStyles><StyleRef ID='s3'/></NetStyles></EntityStyles></Styles><Visibilities>"
    "<EntityVisibility Path='[i]' Visibility='1'/></Visibilities><Transformations>"
    "<EntityTransformation Path='[i][a-part]'/></Transformations></CrossLevelAttributes></IAssembly>"
    "<IFile ID='n' Label='file' FileFullPath='m'><ChildSet><Child ID='m'/><Child ID='z-part'/><Child ID='nowhere'/>"
    "</ChildSet><RefFiles><RefFile RefId='m' RefPath='a-part'/></RefFiles></IFile>"
    "<IPart ID='z-part' Label='late part'/>";

class PrefixMode : public testing::Test
{
protected:
    PrefixMode() : m_scene(InScene(kScene))
    {
        m_scene.WithPrefix("new").Begin();
        // Ids are counted as they are met, so a test finds the objects by their labels.
        for (int number = 1; number <= 50; ++number)
        {
            std::string const id = "new" + std::to_string(number);
            if (IObject* const object = m_scene.Producer().Load(id.c_str()))
                m_byLabel[Text(object->Label())] = object;
        }
    }

    template <class Interface>
    Interface& Labelled(char const* label)
    {
        return dynamic_cast<Interface&>(*m_byLabel.at(label));
    }
    std::string IdOf(char const* label) { return Text(m_byLabel.at(label)->Id()); }

    TestScene m_scene;
    std::map<std::string, IObject*> m_byLabel;
};

}  // namespace

TEST_F(PrefixMode, EveryObjectHasANewIdOfItsOwnAndNoneItsWrittenOne)
{
    EXPECT_THAT(m_byLabel, SizeIs(6));
    std::set<std::string> ids;
    for (auto const& [label, object] : m_byLabel)
        ids.insert(Text(object->Id()));
    EXPECT_THAT(ids, SizeIs(6));
    for (char const* const written : {"a-part", "b-part", "m", "i", "n", "z-part"})
        EXPECT_FALSE(m_scene.Has(written)) << written;
}

TEST_F(PrefixMode, TheRootIdIsNew)
{
    EXPECT_EQ(Text(m_scene.Producer().RootObjectId().Id()), IdOf("file"));
}

TEST_F(PrefixMode, TheChildrenOfAFileAreNewIdsAlsoOfElementsReadOnDemandAndOfThoseThatAreNone)
{
    auto& file = Labelled<XMLFile>("file");
    EXPECT_EQ(m_scene.ChildIds(IdOf("file").c_str()),
              (std::vector<std::string>{IdOf("assembly"), IdOf("late part"), ""}));
    ASSERT_EQ(file.ChildIds().size(), 3u);
    EXPECT_EQ(Text(file.ChildIds()[2]).substr(0, 3), "new");
}

TEST_F(PrefixMode, TheChildrenOfComponentsAreNewIds)
{
    EXPECT_EQ(m_scene.ChildIds(IdOf("assembly").c_str()),
              (std::vector<std::string>{IdOf("instance"), IdOf("other part")}));
    EXPECT_EQ(m_scene.ChildIds(IdOf("other part").c_str()), std::vector<std::string>{IdOf("part")});
}

TEST_F(PrefixMode, ATargetIsANewId)
{
    EXPECT_EQ(Text(Labelled<IInstance>("instance").TargetId().Id()), IdOf("part"));
}

TEST_F(PrefixMode, StyleIdsAreNewAndTheSameEverywhere)
{
    std::vector<std::string> const ofPart = Ids(Labelled<IPart>("part").Styles());
    ASSERT_THAT(ofPart, SizeIs(1));
    std::string const& s1 = ofPart[0];
    EXPECT_EQ(s1.substr(0, 3), "new");
    std::vector<std::string> const ofAssembly = Ids(Labelled<IAssembly>("assembly").Styles());
    ASSERT_THAT(ofAssembly, SizeIs(2));
    std::string const& s2 = ofAssembly[0];
    EXPECT_EQ(ofAssembly[1], s1);
    EXPECT_NE(s2, s1);
    auto const& instance = Labelled<IInstance>("instance");
    EXPECT_THAT(Ids(instance.Styles()), ElementsAre(s1));
    std::vector<std::string> const net = Ids(instance.NetStyles());
    ASSERT_THAT(net, SizeIs(2));
    EXPECT_EQ(net[0], s2);
    IdSet path;
    IdSet styles;
    Labelled<IAssembly>("assembly").CrossLevelStyleAt(0, path, styles);
    EXPECT_THAT(Ids(styles), ElementsAre(s1, net[1]));
}

TEST_F(PrefixMode, ThePathsOfCrossLevelAttributesStayAsWritten)
{
    auto const& assembly = Labelled<IAssembly>("assembly");
    IdSet path;
    IdSet styles;
    bool visible = false;
    Matrix3d transform;
    assembly.CrossLevelStyleAt(0, path, styles);
    EXPECT_THAT(Ids(path), ElementsAre("i", "a-part"));
    assembly.CrossLevelVisibilityAt(0, path, visible);
    EXPECT_THAT(Ids(path), ElementsAre("i"));
    assembly.CrossLevelTransformAt(0, path, transform);
    EXPECT_THAT(Ids(path), ElementsAre("i", "a-part"));
}

TEST_F(PrefixMode, ARefFileStaysAsWritten)
{
    UTF8String id;
    UTF16String path;
    ASSERT_EQ(Labelled<IFile>("file").RefFileAt(0, id, path), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(id), "m");
    EXPECT_EQ(Text(path), "a-part");
    EXPECT_EQ(TextOf(Labelled<IFile>("file"), &IFile::FileFullPath), "m");
}

TEST_F(PrefixMode, TheIdsAndKeysOfTheUniverseStayAsWritten)
{
    UTF8String key;
    Variant value;
    ASSERT_EQ(m_scene.Producer().LoadUniverse()->CustomDataAt(0, key, value), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(key), "a-part");
    ASSERT_NE(value.IdSetValue(), nullptr);
    EXPECT_THAT(Ids(*value.IdSetValue()), ElementsAre("a-part", "s1"));
}

TEST_F(PrefixMode, ExtensionDataAndTheVersionPersistentIdStayAsWritten)
{
    auto const& part = Labelled<IPart>("part");
    auto const content = ExtensionOf(part, "a-part");
    ASSERT_TRUE(content);
    EXPECT_EQ(Text(content->Data()), "a-part");
    EXPECT_THAT(Ids(content->ObjectPath()), ElementsAre("a-part", "s1"));
    EXPECT_EQ(TextOf(part, &IPart::VersionPersistentId), "a-part");
}

TEST(PrefixModeChildReference, OfAComponentThatNobodyMappedYetIsLeftOut)
{
    TestScene scene(
        InScene("<IPart ID='a'><ChildSet><Child ID='z'/><Child ID='nowhere'/></ChildSet></IPart>"
                "<IPart ID='z'/>"));
    scene.WithPrefix("x").Begin();
    EXPECT_THAT(scene.ChildIds("x1"), ElementsAre());
    // The references took no number.
    EXPECT_TRUE(scene.Has("x2"));
    EXPECT_FALSE(scene.Has("x3"));
}

TEST(PrefixModeTarget, IsReadOnDemandByItsWrittenId)
{
    TestScene scene(
        InScene("<IAssembly ID='a'><ChildSet><IInstance ID='i'><Child ID='z'/></IInstance></ChildSet>"
                "</IAssembly><IPart ID='z'/>"));
    scene.WithPrefix("x").Begin();
    EXPECT_THAT(scene.ChildIds("x1"), ElementsAre("x2"));
    EXPECT_EQ(Text(scene.Get<IInstance>("x2").TargetId().Id()), "x3");
    EXPECT_EQ(Text(scene.Get<IPart>("x3").Id()), "x3");
}

TEST(PrefixModeBody, ThatIsRepeatedIsOneObjectWithOneNewIdAndTheBody)
{
    TestScene scene(
        "<Scene><SatInfo Path='s.sab'/><IPart ID='p' Label=''><ChildSet><IBrep ID='b' Label='first'/>"
        "<IBrep ID='b' Label='second'/></ChildSet></IPart><IPart ID='q' Label=''><ChildSet>"
        "<IBrep ID='b' Label='third'/><IPoint ID='c'/></ChildSet></IPart></Scene>");
    std::vector<std::unique_ptr<ENTITY>> entities;
    entities.push_back(std::make_unique<BODY>(BoxShape(1, 2, 3)));
    entities.back()->AddDataId("b");
    scene.WithFile("s.sab", StoreBytes(entities, false)).WithPrefix("n").Begin();
    EXPECT_THAT(scene.ChildIds("n1"), ElementsAre("n2", "n2"));
    EXPECT_THAT(scene.ChildIds("n3"), ElementsAre("n2", "n4")) << "the repeats take no number";
    EXPECT_EQ(Text(scene.Get<IBrep>("n2").Label()), "first");
    EXPECT_TRUE(scene.Get<IBrep>("n2").Body());
    // One alone: with it the id is gone, and the body ends once.
    scene.Producer().Dispose("n2");
    EXPECT_FALSE(scene.Has("n2"));
}

}  // namespace KVR::Test
