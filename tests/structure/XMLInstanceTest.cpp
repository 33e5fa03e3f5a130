#include "structure/XMLInstance.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// A scene with an instance "i" of a part "p", read.
class InstanceScene
{
public:
    explicit InstanceScene(std::string const& attributes, std::string const& content = "")
        : m_scene(
              InScene("<IPart ID='p'/><IInstance ID='i' " + attributes + "><Child ID='p'/>" + content + "</IInstance>"))
    {
        m_scene.Begin();
    }
    IInstance& operator*() { return m_scene.Get<IInstance>("i"); }
    IInstance* operator->() { return &**this; }

private:
    TestScene m_scene;
};

InstanceScene WithContent(std::string const& content)
{
    return InstanceScene("", content);
}

class VisitedInstance : public ObjectVisitor
{
public:
    void Visit(IInstance* object) override { instance = object; }
    IInstance* instance = nullptr;
};

struct VisibilityRow
{
    char const* attribute;
    bool isVisible;
};

class Visibility : public testing::TestWithParam<VisibilityRow>
{
};

}  // namespace

TEST(XMLInstance, WithItsTargetAloneItIsInvisibleAndEverythingElseIsEmpty)
{
    InstanceScene instance("");
    EXPECT_EQ(Text(instance->Id()), "i");
    EXPECT_EQ(Text(instance->Label()), "");
    EXPECT_EQ(Text(instance->TargetId().Id()), "p");
    EXPECT_FALSE(instance->IsVisible());
    EXPECT_FALSE(instance->IsNetVisible());
    EXPECT_TRUE(instance->Styles().IsEmpty());
    EXPECT_TRUE(instance->NetStyles().IsEmpty());
    EXPECT_TRUE(instance->PropertyIds().IsEmpty());
    EXPECT_EQ(UnitsOf(*instance), (UnitAnswers{kUnitType_Unknown, kUnitType_Unknown, kUnitType_Unknown}));
    EXPECT_EQ(ChangeKeyOf(*instance), std::nullopt);
    EXPECT_EQ(TextOf(*instance, &IInstance::VersionPersistentId), std::nullopt);
    EXPECT_FALSE(ExtensionOf(*instance, ""));
    EXPECT_FALSE(instance->IsThreadSafe());
    UTF8String key;
    EXPECT_EQ(instance->ExtensionDataChangeKeyByTypeId("", kSnapshotVersion_Current, key), kIsValueSpecified_No);
}

TEST(XMLInstance, EveryAttributeIsRead)
{
    InstanceScene instance("Label='L \xC3\xB6' Visibility='1' NetVisibility='1' VersionPersistentId='v1'");
    EXPECT_EQ(Text(instance->Label()), "L \xC3\xB6");
    EXPECT_TRUE(instance->IsVisible());
    EXPECT_TRUE(instance->IsNetVisible());
    EXPECT_EQ(TextOf(*instance, &IInstance::VersionPersistentId), "v1");
}

TEST(XMLInstance, NamesOfAttributesAreExact)
{
    InstanceScene instance("label='L' visibility='1' netVisibility='1' VERSIONPERSISTENTID='v1'");
    EXPECT_EQ(Text(instance->Label()), "");
    EXPECT_FALSE(instance->IsVisible());
    EXPECT_FALSE(instance->IsNetVisible());
    EXPECT_EQ(TextOf(*instance, &IInstance::VersionPersistentId), std::nullopt);
}

TEST(XMLInstance, WithoutAnIDItIsRegisteredUnderTheEmptyId)
{
    TestScene scene(
        InScene("<IPart ID='p'/><IAssembly ID='a'><ChildSet><IInstance Label='nameless'>"
                "<Child ID='p'/></IInstance></ChildSet></IAssembly>"));
    scene.Begin();
    EXPECT_EQ(Text(scene.Get<IInstance>("").Label()), "nameless");
    EXPECT_THAT(scene.ChildIds("a"), ElementsAre(""));
}

TEST(XMLInstance, VisitsAsAnInstance)
{
    InstanceScene instance("");
    VisitedInstance visitor;
    instance->AcceptVisitor(&visitor);
    EXPECT_EQ(visitor.instance, &*instance);
}

INSTANTIATE_TEST_SUITE_P(XMLInstance, Visibility,
                         testing::Values(VisibilityRow{"='1'", true}, VisibilityRow{"='0'", false},
                                         VisibilityRow{"='True'", false}, VisibilityRow{"='true'", false},
                                         VisibilityRow{"='TRUE'", false}, VisibilityRow{"=''", false},
                                         VisibilityRow{"=' 1'", false}, VisibilityRow{"='1 '", false},
                                         VisibilityRow{"='01'", false}, VisibilityRow{"='+1'", false},
                                         VisibilityRow{"='2'", false}, VisibilityRow{"='11'", false},
                                         // Absent: an attribute of another name stands in its place.
                                         VisibilityRow{"_='1'", false}));

TEST_P(Visibility, IsTrueForTheTextOneAlone)
{
    InstanceScene visibility(std::string("Visibility") + GetParam().attribute);
    EXPECT_EQ(visibility->IsVisible(), GetParam().isVisible);
    EXPECT_FALSE(visibility->IsNetVisible());
    InstanceScene netVisibility(std::string("NetVisibility") + GetParam().attribute);
    EXPECT_FALSE(netVisibility->IsVisible());
    EXPECT_EQ(netVisibility->IsNetVisible(), GetParam().isVisible);
}

TEST(XMLInstance, StylesAndNetStylesAreTwoSetsWithoutRepeatsAndASecondElementAppends)
{
    InstanceScene instance = WithContent(
        "<Styles><StyleRef ID='b'/><StyleRef ID='a'/><StyleRef ID='b'/></Styles>"
        "<NetStyles><StyleRef ID='n'/></NetStyles><Styles><StyleRef ID='c'/><StyleRef ID='a'/></Styles>"
        "<NetStyles><StyleRef ID='b'/></NetStyles>");
    EXPECT_THAT(Ids(instance->Styles()), ElementsAre("b", "a", "c"));
    EXPECT_THAT(Ids(instance->NetStyles()), ElementsAre("n", "b"));
}

TEST(XMLInstance, StylesWithoutAUsableIdAreEmpty)
{
    InstanceScene instance = WithContent(
        "<Styles><StyleRef/><StyleRef ID=''/><StyleRef id='a'/><styleRef ID='a'/><Other ID='a'/>a</Styles>"
        "<NetStyles/><styles><StyleRef ID='a'/></styles><Netstyles><StyleRef ID='a'/></Netstyles>");
    EXPECT_TRUE(instance->Styles().IsEmpty());
    EXPECT_TRUE(instance->NetStyles().IsEmpty());
}

TEST(XMLInstance, AUnitElementGivesAllThreeUnits)
{
    InstanceScene instance = WithContent(
        "<Unit LengthUnit='kUnitType_Inch' DisplayAngleUnit='kUnitType_Radian' DisplayLengthUnit='kUnitType_Mile'/>");
    EXPECT_EQ(UnitsOf(*instance), (UnitAnswers{kUnitType_Inch, kUnitType_Radian, kUnitType_Mile}));
}

TEST(XMLInstance, ASecondUnitElementReplacesWhatItSays)
{
    InstanceScene instance = WithContent(
        "<Unit LengthUnit='kUnitType_Inch' DisplayAngleUnit='kUnitType_Radian'/>"
        "<Unit LengthUnit='kUnitType_Foot' DisplayLengthUnit='kUnitType_Mile'/>");
    EXPECT_EQ(UnitsOf(*instance), (UnitAnswers{kUnitType_Foot, kUnitType_Radian, kUnitType_Mile}));
}

TEST(XMLInstance, TheOlderFormOfUnitsIsSkipped)
{
    InstanceScene instance = WithContent("<UnitAndTolerance LengthUnit='kUnitType_Inch'/>");
    EXPECT_EQ(UnitsOf(*instance), (UnitAnswers{kUnitType_Unknown, kUnitType_Unknown, kUnitType_Unknown}));
}

TEST(XMLInstance, ItsUnitsCanBeSetByTheHost)
{
    InstanceScene instance = WithContent("<Unit LengthUnit='kUnitType_Inch'/>");
    instance->SetLengthUnit(kUnitType_Mil);
    instance->SetDisplayAngleUnit(kUnitType_Degree);
    instance->SetDisplayLengthUnit(kUnitType_Yard);
    EXPECT_EQ(UnitsOf(*instance), (UnitAnswers{kUnitType_Mil, kUnitType_Degree, kUnitType_Yard}));
}

TEST(XMLInstance, TheLastChangeKeyIsAnsweredWhateverTheVersion)
{
    InstanceScene instance = WithContent("<ChangeKey>first</ChangeKey><ChangeKey>second</ChangeKey>");
    EXPECT_EQ(ChangeKeyOf(*instance), "second");
    EXPECT_EQ(ChangeKeyOf(*instance, static_cast<SnapshotVersionEnum>(3)), "second");
}

TEST(XMLInstance, OfSeveralExtensionDataTheLastIsKept)
{
    InstanceScene instance =
        WithContent("<ExtensionData TypeId='a' Content='1'/><ExtensionData TypeId='b' Content='2'/>");
    EXPECT_EQ(ExtensionTextOf(*instance, "a"), std::nullopt);
    EXPECT_EQ(ExtensionTextOf(*instance, "b"), "2");
}

TEST(XMLInstance, ExtensionDataIsWrittenOverSoThatAUnitAndATransformOfAnEarlierOneStay)
{
    InstanceScene instance = WithContent(
        "<ExtensionData TypeId='a' Content='1' OccurrencePath='[x]' LengthUnit='kUnitType_Mile' Transformation='" +
        MoveText(4) + "'/><ExtensionData TypeId='b'/>");
    auto const content = ExtensionOf(*instance, "b");
    ASSERT_TRUE(content);
    EXPECT_EQ(Text(content->Data()), "");
    EXPECT_TRUE(content->ObjectPath().IsEmpty());
    EXPECT_EQ(AnswerOf(*content, &ExtensionDataContent::LengthUnit), kUnitType_Mile);
    auto const transform = AnswerOf(*content, &ExtensionDataContent::Transform);
    ASSERT_TRUE(transform);
    EXPECT_EQ(transform->Element(0, 3), 4);
}

TEST(XMLInstance, ExtensionDataWhoseTypeIsEmptyInTheEndIsDropped)
{
    InstanceScene alone = WithContent("<ExtensionData Content='1'/>");
    EXPECT_EQ(ExtensionTextOf(*alone, ""), std::nullopt);
    InstanceScene last = WithContent("<ExtensionData TypeId='a' Content='1'/><ExtensionData TypeId='' Content='2'/>");
    EXPECT_EQ(ExtensionTextOf(*last, "a"), std::nullopt);
    EXPECT_EQ(ExtensionTextOf(*last, ""), std::nullopt);
    InstanceScene first = WithContent("<ExtensionData Content='1'/><ExtensionData TypeId='a' Content='2'/>");
    EXPECT_EQ(ExtensionTextOf(*first, "a"), "2");
}

TEST(XMLInstance, EverythingOfExtensionDataIsAnswered)
{
    InstanceScene instance = WithContent(
        "<ExtensionData TypeId='t' Content='&lt;x/&gt;' OccurrencePath='[a][b]' "
        "Type='kObjectPathTypeEnum_OccurancePath' LengthUnit='bad' Transformation='" +
        MoveText(0) + "'/>");
    auto const content = ExtensionOf(*instance, "t");
    ASSERT_TRUE(content);
    EXPECT_EQ(Text(content->Data()), "<x/>");
    EXPECT_THAT(Ids(content->ObjectPath()), ElementsAre("a", "b"));
    EXPECT_EQ(content->ObjectPathType(), ExtensionDataContent::kObjectPathType_Occurrence);
    EXPECT_EQ(AnswerOf(*content, &ExtensionDataContent::LengthUnit), kUnitType_Unknown);
    EXPECT_TRUE(AnswerOf(*content, &ExtensionDataContent::Transform));
}

TEST(XMLInstance, ChildrenOfOtherNamesAreSkipped)
{
    InstanceScene instance = WithContent(
        "text<child ID='nowhere'/><changeKey>k</changeKey><unit LengthUnit='kUnitType_Inch'/>"
        "<extensionData TypeId='t'/><FileProperties/><Transform>2</Transform><?Child ID='nowhere'?>"
        "<ChildSet><Child ID='nowhere'/></ChildSet>");
    EXPECT_EQ(Text(instance->TargetId().Id()), "p");
    EXPECT_EQ(ChangeKeyOf(*instance), std::nullopt);
    EXPECT_FALSE(ExtensionOf(*instance, "t"));
    EXPECT_EQ(AnswerOf(*instance, &IUnit::LengthUnit), kUnitType_Unknown);
}

TEST(XMLInstance, TwoOfOneIdAreTwoObjectsOfWhichTheFirstIsServed)
{
    TestScene scene(
        InScene("<IPart ID='p'/><IAssembly ID='a'><ChildSet><IInstance ID='i' Label='first'>"
                "<Child ID='p'/></IInstance><IInstance ID='i' Label='second'><Child ID='p'/></IInstance>"
                "</ChildSet></IAssembly>"));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("a"), ElementsAre("i", "i"));
    EXPECT_EQ(Text(scene.Get<IInstance>("i").Label()), "first");
    scene.Producer().Dispose("i");
    EXPECT_FALSE(scene.Has("i"));
}

}  // namespace KVR::Test
