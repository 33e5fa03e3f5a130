// Whether a scene is more than one lone part, told from the document alone.

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "framework/xml_util/XMLPlatform.h"
#include "producer/ElementReaders.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

struct Classified
{
    char const* name;
    std::string document;
    bool isAssembly;
};

std::ostream& operator<<(std::ostream& stream, Classified const& item)
{
    return stream << item.document;
}

std::string File(std::string const& children, std::string const& attributes = "")
{
    return "<IFile ID='f' " + attributes + "><ChildSet>" + children + "</ChildSet></IFile>";
}

std::string const kPart = "<P ID='p' Type='IPart'/>";
std::string const kAssembly = "<A ID='a' Type='IAssembly'/>";
std::string const kInstance = "<I ID='i' Type='IInstance'/>";
std::string const kOther = "<O ID='o' Type='IBrep'/>";
std::string const kUntyped = "<U ID='u'/>";

class ClassifyStructureOf : public testing::TestWithParam<Classified>
{
};

}  // namespace

TEST_P(ClassifyStructureOf, ADocument)
{
    TestScene scene("<Scene>" + GetParam().document + "</Scene>");
    bool has = !GetParam().isAssembly;
    EXPECT_EQ(scene.Producer().QueryFile()->HasAssemblyStructure(has), kIsValueSpecified_Yes);
    EXPECT_EQ(has, GetParam().isAssembly);
}

INSTANTIATE_TEST_SUITE_P(
    Documents, ClassifyStructureOf,
    testing::Values(
        Classified{"Empty", "", false}, Classified{"NoFile", "<IPart ID='p'/><IAssembly ID='a'/>", false},
        Classified{"FileWithoutChildSet", "<IFile ID='f'/>", false}, Classified{"EmptyChildSet", File(""), false},
        Classified{"OnlyText", File("some text"), false}, Classified{"LonePart", File(kPart), false},
        Classified{"LonePartAmongTextAndComments", File(" a <!--b--> " + kPart + " <?c d?> e "), false},
        Classified{"TwoParts", File(kPart + kPart), true}, Classified{"PartThenOther", File(kPart + kOther), true},
        Classified{"OtherThenPart", File(kOther + kPart), true}, Classified{"LoneOther", File(kOther), false},
        Classified{"ManyOthers", File(kOther + kOther + kOther), false},
        Classified{"OthersThenPart", File(kOther + kOther + kPart), true},
        Classified{"Assembly", File(kAssembly), true}, Classified{"Instance", File(kInstance), true},
        Classified{"OtherThenAssembly", File(kOther + kOther + kAssembly), true},
        // An element without a type counts as a sibling and is no part.
        Classified{"Untyped", File(kUntyped), false}, Classified{"UntypedThenPart", File(kUntyped + kPart), true},
        Classified{"PartThenUntyped", File(kPart + kUntyped), true},
        Classified{"TypeInAnotherCase", File("<A ID='a' Type='iassembly'/>"), false},
        Classified{"InstanceInAnotherCase", File("<I ID='i' Type='iinstance'/>"), false},
        Classified{"PartInAnotherCase", File("<P ID='p' Type='ipart'/>" + kOther), false},
        Classified{"TypeWithBlanks", File("<A ID='a' Type=' IAssembly'/>"), false},
        Classified{"ElementNameDoesNotCount", File("<IAssembly ID='a' Type='IPart'/>"), false},
        // Only children count, and of several sets the first.
        Classified{"NestedAssembly", File("<P Type='IPart'>" + kAssembly + "</P>"), false},
        Classified{"FirstChildSet",
                   "<IFile ID='f'><ChildSet>" + kPart + "</ChildSet><ChildSet>" + kAssembly + "</ChildSet></IFile>",
                   false},
        Classified{"ChildSetInAnotherElement", "<IFile ID='f'><G><ChildSet>" + kAssembly + "</ChildSet></G></IFile>",
                   false},
        // The first file that is flagged, or else the last one.
        Classified{"LastOfTwoAssembly", File(kPart) + File(kAssembly), true},
        Classified{"LastOfTwoPart", File(kAssembly) + File(kPart), false},
        Classified{"FlaggedFirst", File(kAssembly, "IsRoot='1'") + File(kPart), true},
        Classified{"FlaggedFirstOfTwo", File(kPart, "IsRoot='1'") + File(kAssembly, "IsRoot='1'"), false},
        Classified{"FlaggedSecond", File(kPart) + File(kAssembly, "IsRoot='1'") + File(kPart), true},
        // Kept: here the flag is the text "1" alone, while the file itself takes "true", too.
        Classified{"FlagTrue", File(kAssembly, "IsRoot='true'") + File(kPart), false},
        Classified{"FlagPadded", File(kAssembly, "IsRoot=' 1'") + File(kPart), false},
        Classified{"FlagZero", File(kAssembly, "IsRoot='0'") + File(kPart), false},
        Classified{"FileNotUnderTheRoot", "<G>" + File(kAssembly) + "</G>", false}),
    [](auto const& test) { return std::string(test.param.name); });

TEST(ClassifyStructure, BuildsNoObject)
{
    TestScene scene("<Scene>" + File(kAssembly) + "<IAssembly ID='a'/></Scene>");
    scene.Producer().QueryFile();
    EXPECT_FALSE(scene.Has("f"));
    EXPECT_FALSE(scene.Has("a"));
}

TEST(ClassifyStructure, IsTheSameAfterTheSceneWasRead)
{
    TestScene scene("<Scene>" + File(kAssembly) + "<IAssembly ID='a'/></Scene>");
    scene.Begin();
    bool has = false;
    EXPECT_EQ(scene.Producer().QueryFile()->HasAssemblyStructure(has), kIsValueSpecified_Yes);
    EXPECT_TRUE(has);
}

TEST(ClassifyStructure, AParserWithoutADocumentHasNoAssembly)
{
    XMLPlatformScope const platform;
    xercesc::XercesDOMParser const parser;
    EXPECT_FALSE(ClassifyStructure(&parser));
}

}  // namespace KVR::Test
