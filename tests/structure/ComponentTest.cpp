// What assemblies and parts have in common, held for both.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

class VisitedComponent : public ObjectVisitor
{
public:
    void Visit(IAssembly* object) override { assembly = object; }
    void Visit(IPart* object) override { part = object; }
    IAssembly* assembly = nullptr;
    IPart* part = nullptr;
};

// The parameter is the element's name.
class Component : public testing::TestWithParam<char const*>
{
protected:
    std::string ElementText(std::string const& attributes, std::string const& content = "") const
    {
        return std::string("<") + GetParam() + " " + attributes + ">" + content + "</" + GetParam() + ">";
    }

    // Reads a component "c" with these attributes.
    IComponent& Read(std::string const& attributes, std::string const& content = "")
    {
        m_scene = std::make_unique<TestScene>(InScene(ElementText("ID='c' " + attributes, content)));
        m_scene->Begin();
        return m_scene->Get<IComponent>("c");
    }
    IComponent& ReadContent(std::string const& content) { return Read("Label=''", content); }

    std::unique_ptr<TestScene> m_scene;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Structure, Component, testing::Values("IAssembly", "IPart"),
                         [](auto const& test) { return test.param; });

TEST_P(Component, WithItsIdAloneEverythingElseIsEmptyAndItsUnitsAreSpecifiedAsUnknown)
{
    IComponent& component = Read("");
    EXPECT_EQ(Text(component.Id()), "c");
    EXPECT_EQ(Text(component.Label()), "");
    EXPECT_EQ(component.FileProperties(), nullptr);
    EXPECT_FALSE(component.IsSingleUnderRoot());
    EXPECT_EQ(component.ChildCount(), 0u);
    EXPECT_EQ(UnitsOf(component), (UnitAnswers{kUnitType_Unknown, kUnitType_Unknown, kUnitType_Unknown}));
    EXPECT_EQ(ChangeKeyOf(component), std::nullopt);
    EXPECT_EQ(TextOf(component, &IComponent::VersionPersistentId), std::nullopt);
    EXPECT_FALSE(ExtensionOf(component, ""));
    EXPECT_FALSE(component.IsThreadSafe());
    for (IdSet const& set :
         {component.PropertyIds(), component.Styles(), component.StyleSet(), component.TextureSet(),
          component.LayerSet(), component.GroupSet(), component.LodSet(), component.CameraSet(), component.ViewSet()})
        EXPECT_TRUE(set.IsEmpty());
}

TEST_P(Component, AnExtensionDataChangeKeyIsNeverSpecified)
{
    IComponent& component = ReadContent("<ExtensionData TypeId='t'/><ChangeKey>k</ChangeKey>");
    UTF8String key("before");
    EXPECT_EQ(component.ExtensionDataChangeKeyByTypeId("t", kSnapshotVersion_Current, key), kIsValueSpecified_No);
    EXPECT_EQ(Text(key), "before");
}

TEST_P(Component, VisitsAsItsKind)
{
    IComponent& component = Read("");
    VisitedComponent visitor;
    component.AcceptVisitor(&visitor);
    EXPECT_EQ(visitor.assembly, dynamic_cast<IAssembly*>(&component));
    EXPECT_EQ(visitor.part, dynamic_cast<IPart*>(&component));
    EXPECT_TRUE(visitor.assembly || visitor.part);
}

TEST_P(Component, EveryAttributeIsRead)
{
    IComponent& component = Read("Label=' L \xC3\xB6 ' IsSingleUnderRoot='1' VersionPersistentId='v1'");
    EXPECT_EQ(Text(component.Label()), " L \xC3\xB6 ");
    EXPECT_TRUE(component.IsSingleUnderRoot());
    EXPECT_EQ(TextOf(component, &IComponent::VersionPersistentId), "v1");
}

TEST_P(Component, NamesOfAttributesAreExact)
{
    IComponent& component = Read("label='L' isSingleUnderRoot='1' versionPersistentID='v1'");
    EXPECT_EQ(Text(component.Label()), "");
    EXPECT_FALSE(component.IsSingleUnderRoot());
    EXPECT_EQ(TextOf(component, &IComponent::VersionPersistentId), std::nullopt);
}

TEST_P(Component, IsSingleUnderRootForTheIntegerOneAlone)
{
    for (char const* const text : {"1", " 1 ", "+1", "001"})
        EXPECT_TRUE(Read(std::string("IsSingleUnderRoot='") + text + "'").IsSingleUnderRoot()) << text;
    for (char const* const text : {"2", "0", "-1", "", "true", "True", "1.0", "1x", "11", "4294967297"})
        EXPECT_FALSE(Read(std::string("IsSingleUnderRoot='") + text + "'").IsSingleUnderRoot()) << text;
}

TEST_P(Component, StylesAreReadWithoutRepeatsAndASecondElementAppends)
{
    IComponent& component = ReadContent(
        "<Styles><StyleRef ID='b'/><StyleRef ID='a'/><StyleRef ID='b'/><StyleRef/><StyleRef ID=''/>"
        "<Other ID='x'/>text</Styles><Styles/><Styles><StyleRef ID='c'/><StyleRef ID='a'/></Styles>");
    EXPECT_THAT(Ids(component.Styles()), ElementsAre("b", "a", "c"));
    EXPECT_TRUE(component.StyleSet().IsEmpty());
}

TEST_P(Component, NetStylesAreNoneOfItsChildren)
{
    EXPECT_TRUE(ReadContent("<NetStyles><StyleRef ID='a'/></NetStyles>").Styles().IsEmpty());
}

TEST_P(Component, TheLastChangeKeyIsAnsweredWhateverTheVersion)
{
    IComponent& component = ReadContent("<ChangeKey>first</ChangeKey><ChangeKey>second</ChangeKey>");
    EXPECT_EQ(ChangeKeyOf(component), "second");
    EXPECT_EQ(ChangeKeyOf(component, static_cast<SnapshotVersionEnum>(-1)), "second");
}

TEST_P(Component, EveryExtensionDataElementIsAddedAndTheFirstOfATypeIsAnswered)
{
    IComponent& component = ReadContent(
        "<ExtensionData TypeId='a' Content='1'/><ExtensionData TypeId='b' Content='2'/>"
        "<ExtensionData TypeId='a' Content='3'/><ExtensionData Content='4'/>");
    EXPECT_EQ(ExtensionTextOf(component, "a"), "1");
    EXPECT_EQ(ExtensionTextOf(component, "b"), "2");
    EXPECT_EQ(ExtensionTextOf(component, ""), "4");
    EXPECT_EQ(ExtensionTextOf(component, "c"), std::nullopt);
}

TEST_P(Component, ExtensionDataStartsAfreshInEachElement)
{
    IComponent& component = ReadContent(
        "<ExtensionData TypeId='a' Content='1' LengthUnit='kUnitType_Mile' OccurrencePath='[x]'/>"
        "<ExtensionData TypeId='b'/>");
    auto const content = ExtensionOf(component, "b");
    ASSERT_TRUE(content);
    EXPECT_EQ(Text(content->Data()), "");
    EXPECT_TRUE(content->ObjectPath().IsEmpty());
    EXPECT_EQ(AnswerOf(*content, &ExtensionDataContent::LengthUnit), std::nullopt);
}

TEST_P(Component, OfSeveralFilePropertiesTheLastAreServed)
{
    IComponent& component = ReadContent(
        "<FileProperties><Title>first</Title><Author>a</Author></FileProperties>"
        "<FileProperties><Title>second</Title></FileProperties>"
        "<FileProperties><Title>last</Title></FileProperties>");
    ASSERT_NE(component.FileProperties(), nullptr);
    EXPECT_EQ(TextOf(*component.FileProperties(), &FileProperties::Title), "last");
    EXPECT_EQ(TextOf(*component.FileProperties(), &FileProperties::Author), std::nullopt);
}

TEST_P(Component, ChildrenOfOtherNamesAreSkipped)
{
    IComponent& component = ReadContent(
        "text<childSet><Child ID='c'/></childSet><styles><StyleRef ID='s'/></styles><STYLES><StyleRef ID='s'/></STYLES>"
        "<changekey>k</changekey><extensionData TypeId='t'/><fileproperties/><RefFiles/><Tolerance/>"
        "<unit LengthUnit='kUnitType_Inch'/><?Styles?><?FileProperties?>");
    EXPECT_EQ(component.ChildCount(), 0u);
    EXPECT_TRUE(component.Styles().IsEmpty());
    EXPECT_EQ(ChangeKeyOf(component), std::nullopt);
    EXPECT_FALSE(ExtensionOf(component, "t"));
    EXPECT_EQ(component.FileProperties(), nullptr);
    EXPECT_EQ(AnswerOf(component, &IUnit::LengthUnit), kUnitType_Unknown);
}

TEST_P(Component, AChildReferenceFindsAnObjectOfAnEarlierId)
{
    TestScene scene(InScene(ElementText("ID='m'", "<ChildSet><Child ID='a'/></ChildSet>") + "<IPart ID='a'/>"));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("a"));
}

TEST_P(Component, AChildReferenceToALaterIdIsLeftOutSilentlyThoughItsElementStandsAbove)
{
    TestScene scene(InScene("<IPart ID='z'/>" + ElementText("ID='m'",
                                                            "<ChildSet><Child ID='z'/></ChildSet>"
                                                            "<ChangeKey>k</ChangeKey>")));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre());
    EXPECT_TRUE(scene.Has("z"));
    EXPECT_EQ(ChangeKeyOf(scene.Get<IComponent>("m")), "k");
}

TEST_P(Component, AChildReferenceToNothingToItselfOrToNoIdLeavesNoGap)
{
    TestScene scene(InScene(ElementText("ID='m'",
                                        "<ChildSet><Child ID='nowhere'/><Child ID='a'/><Child ID='m'/>"
                                        "<Child/><child ID='a'/><Child ID='b'/></ChildSet>") +
                            "<IPart ID='a'/><IPart ID='b'/>"));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("a", "b"));
}

TEST_P(Component, ChildReferencesKeepTheirOrderAndRepeatsOverSeveralSets)
{
    TestScene scene(InScene(ElementText("ID='m'",
                                        "<ChildSet><Child ID='b'/><Child ID='a'/></ChildSet><ChildSet/>"
                                        "<ChildSet><Unknown ID='a'/><Child ID='b'/></ChildSet>") +
                            "<IPart ID='a'/><IPart ID='b'/>"));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("b", "a", "b"));
}

TEST_P(Component, AChildReferenceFindsALaterIdThatAFileHadReadBefore)
{
    TestScene scene(InScene("<IFile ID='f'><ChildSet><Child ID='z'/><Child ID='m'/></ChildSet></IFile>" +
                            ElementText("ID='m'", "<ChildSet><Child ID='z'/></ChildSet>") + "<IPart ID='z'/>"));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("z"));
}

}  // namespace KVR::Test
