#include "readers/ChangeKeyReader.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/ParsedDocument.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

std::string KeyOf(std::string const& element)
{
    ChangeKeyText key;
    {
        ParsedDocument const document(element);
        EXPECT_TRUE(ReadChangeKey(document.Root(), key));
    }
    UTF8String text;
    EXPECT_EQ(key.Text(text), kIsValueSpecified_Yes) << "the document is gone, and the key stays";
    return Text(text);
}

}  // namespace

TEST(ReadChangeKey, GivesTheTextOfTheElement)
{
    EXPECT_EQ(KeyOf("<ChangeKey>key</ChangeKey>"), "key");
    EXPECT_EQ(KeyOf("<ChangeKey> a\n b </ChangeKey>"), " a\n b ") << "as it stands";
    EXPECT_EQ(KeyOf("<ChangeKey/>"), "");
    EXPECT_EQ(KeyOf("<ChangeKey>\xE6\xA8\xA1\xF0\x9F\x98\x80</ChangeKey>"), "\xE6\xA8\xA1\xF0\x9F\x98\x80");
}

TEST(ReadChangeKey, JoinsTheTextOfAllThatIsInItButCommentsAndInstructions)
{
    EXPECT_EQ(KeyOf("<ChangeKey>a<!--x--><?y z?>b<![CDATA[<c>]]><d>d<e>e</e></d>f</ChangeKey>"), "ab<c>def");
    EXPECT_EQ(KeyOf("<!DOCTYPE ChangeKey [<!ENTITY x 'entity'>]><ChangeKey>an &x;</ChangeKey>"), "an entity");
}

TEST(ReadChangeKey, AnswersFalseAndLeavesTheKeyAloneForANullNodeAndForAnyOtherName)
{
    ChangeKeyText slot(u"before");
    EXPECT_FALSE(ReadChangeKey(nullptr, slot));
    ParsedDocument const document("<changekey>key<?ChangeKey key?></changekey>");
    EXPECT_FALSE(ReadChangeKey(document.Root(), slot));
    EXPECT_FALSE(ReadChangeKey(document.FirstNamed(u"ChangeKey"), slot)) << "an instruction is no element";
    UTF8String text;
    EXPECT_EQ(slot.Text(text), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(text), "before");
}

}  // namespace KVR::Test
