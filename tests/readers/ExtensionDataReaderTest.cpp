#include "readers/ExtensionDataReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/api/IGenericObject.h"
#include "framework/xml_util/ObjectState.h"
#include "tests/support/ParsedDocument.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using List = std::vector<std::string>;

ExtensionDataContent Read(std::string const& attributes, std::string const& content = "")
{
    ParsedDocument const document("<ExtensionData " + attributes + ">" + content + "</ExtensionData>");
    ExtensionDataContent read;
    EXPECT_TRUE(ReadExtensionData(document.Root(), read));
    return read;
}

class SomeObject final : public ObjectState<IGenericObject>
{
public:
    SomeObject() : ObjectState("id", UTF16String()) {}
};

}  // namespace

TEST(ReadExtensionData, TakesEveryAttribute)
{
    ExtensionDataContent const content =
        Read(R"(TypeId="t" Content="c" Type="kObjectPathTypeEnum_OccurancePath" OccurrencePath="[a][b]"
                LengthUnit="kUnitType_Inch" Transformation="1 0 0 5 0 1 0 6 0 0 1 7 0 0 0 1")");
    EXPECT_EQ(Text(content.TypeId()), "t");
    EXPECT_EQ(Text(content.Data()), "c");
    EXPECT_EQ(Ids(content.ObjectPath()), (List{"a", "b"}));
    EXPECT_EQ(content.ObjectPathType(), 0);
    UnitTypeEnum unit = kUnitType_Unknown;
    ASSERT_EQ(content.LengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Inch);
    Matrix3d transform;
    ASSERT_EQ(content.Transform(transform), kIsValueSpecified_Yes);
    EXPECT_EQ(transform.Element(0, 3), 5.0);
    EXPECT_EQ(transform.Element(2, 3), 7.0);
}

TEST(ReadExtensionData, WithOnlyATypeIdHasAnEmptyDataTextAndAnEmptyPathOfTypeOne)
{
    ExtensionDataContent const content = Read(R"(TypeId="t")", "text is no content");
    EXPECT_EQ(Text(content.TypeId()), "t");
    EXPECT_EQ(Text(content.Data()), "");
    EXPECT_TRUE(content.ObjectPath().IsEmpty());
    EXPECT_EQ(content.ObjectPathType(), 1);
    UnitTypeEnum unit = kUnitType_Unknown;
    Matrix3d transform;
    EXPECT_EQ(content.LengthUnit(unit), kIsValueSpecified_No);
    EXPECT_EQ(content.Transform(transform), kIsValueSpecified_No);
}

TEST(ReadExtensionData, WritesOverWhatTheContentHeld)
{
    ParsedDocument const document("<ExtensionData/>");
    ExtensionDataContent content = Read(R"(TypeId="t" Content="c" Type="kObjectPathTypeEnum_OccurancePath"
        OccurrencePath="[a]" LengthUnit="kUnitType_Inch")");
    EXPECT_TRUE(ReadExtensionData(document.Root(), content));
    EXPECT_EQ(Text(content.TypeId()), "");
    EXPECT_EQ(Text(content.Data()), "");
    EXPECT_TRUE(content.ObjectPath().IsEmpty());
    EXPECT_EQ(content.ObjectPathType(), 1);
    UnitTypeEnum unit = kUnitType_Unknown;
    EXPECT_EQ(content.LengthUnit(unit), kIsValueSpecified_Yes) << "an absent unit is not set, so the former one stays";
}

TEST(ReadExtensionData, TakesThePathTypeByItsExactWord)
{
    EXPECT_EQ(Read(R"(Type="kObjectPathTypeEnum_OccurancePath")").ObjectPathType(), 0);
    EXPECT_EQ(Read(R"(Type="kObjectPathTypeEnum_OccurrancePath")").ObjectPathType(), 1) << "with two r: another word";
    EXPECT_EQ(Read(R"(Type="kObjectPathTypeEnum_OccurrencePath")").ObjectPathType(), 1);
    EXPECT_EQ(Read(R"(Type="kobjectpathtypeenum_occurancepath")").ObjectPathType(), 1);
    EXPECT_EQ(Read(R"(Type="0")").ObjectPathType(), 1);
    EXPECT_EQ(Read(R"(Type="")").ObjectPathType(), 1);
}

TEST(ReadExtensionData, SetsAUnitThatIsNoneAsUnknown)
{
    for (char const* const text : {"metre", ""})
    {
        ExtensionDataContent const content = Read(std::string("LengthUnit=\"") + text + "\"");
        UnitTypeEnum unit = kUnitType_Inch;
        EXPECT_EQ(content.LengthUnit(unit), kIsValueSpecified_Yes) << text;
        EXPECT_EQ(unit, kUnitType_Unknown) << text;
    }
}

TEST(ReadExtensionData, StoresAnIdentityAndWhatIsNoTransformLikeAnyMatrix)
{
    for (char const* const text : {"1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1", "", "1 2 3", "not a matrix"})
    {
        ExtensionDataContent const content = Read(std::string("Transformation=\"") + text + "\"");
        Matrix3d transform;
        transform.SetElement(0, 3, 9.0);
        EXPECT_EQ(content.Transform(transform), kIsValueSpecified_Yes) << text;
        EXPECT_TRUE(transform.IsIdentity()) << text;
    }
}

TEST(ReadExtensionData, AnswersFalseForANullNodeAndForAnyOtherName)
{
    ExtensionDataContent content;
    EXPECT_FALSE(ReadExtensionData(nullptr, content));
    for (char const* const name : {"extensiondata", "Extension", "ExtensionDatas"})
    {
        ParsedDocument const document(std::string("<") + name + R"( TypeId="t"/>)");
        EXPECT_FALSE(ReadExtensionData(document.Root(), content)) << name;
    }
    EXPECT_TRUE(content.TypeId().IsEmpty());
}

TEST(AddExtensionData, AddsAContentToTheObject)
{
    SomeObject object;
    ParsedDocument const document(R"(<S><ExtensionData TypeId="t" Content="first"/></S>)");
    AddExtensionData(document.FirstNamed(u"ExtensionData"), object);
    ExtensionDataContent content;
    ASSERT_EQ(object.ExtensionDataByTypeId("t", content), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(content.Data()), "first");
    EXPECT_EQ(object.ExtensionDataByTypeId("T", content), kIsValueSpecified_No);
}

struct PathCase
{
    char const* text;
    List ids;
};

class ParseOccurrencePathOf : public testing::TestWithParam<PathCase>
{
};

TEST_P(ParseOccurrencePathOf, ATextIsCutAtEachClosingBracket)
{
    EXPECT_EQ(Ids(ParseOccurrencePath(GetParam().text)), GetParam().ids) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ParseOccurrencePathOf,
    testing::Values(PathCase{"[a][b][c]", {"a", "b", "c"}}, PathCase{"[a]", {"a"}},
                    // A repeated id stays at its first place.
                    PathCase{"[a][b][a]", {"a", "b"}}, PathCase{"[a][a]", {"a"}},
                    // Without a closing bracket there is nothing, and behind the last one nothing counts.
                    PathCase{"", {}}, PathCase{"[a", {}}, PathCase{"abc", {}}, PathCase{"[", {}},
                    PathCase{"[a]b", {"a"}}, PathCase{"[a][b", {"a"}}, PathCase{"[a] ", {"a"}},
                    // The character in front of an id is skipped unseen, whatever it is.
                    PathCase{"xa]yb]", {"a", "b"}}, PathCase{"a]b]", {""}}, PathCase{"]", {""}}, PathCase{"]]", {""}},
                    PathCase{"[]", {""}}, PathCase{"[][a]", {"", "a"}}, PathCase{"[a] [b]", {"a", "[b"}},
                    PathCase{"[[a]]", {"[a", ""}}, PathCase{"[ a ]", {" a "}},
                    PathCase{"[\xC3\xA4][\xE6\xA8\xA1]", {"\xC3\xA4", "\xE6\xA8\xA1"}}));

}  // namespace KVR::Test
