#include "readers/ChangeKeyReader.h"

#include <gtest/gtest.h>

#include <string>

#include "framework/xml_util/XMLStrUtil.h"
#include "tests/support/ParsedDocument.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

std::string KeyOf(std::string const& element)
{
    ParsedDocument const document(element);
    XMLCh const* slot = nullptr;
    EXPECT_TRUE(ReadChangeKey(document.Root(), slot));
    EXPECT_NE(slot, nullptr);
    return Text(XMLStrUtil::XMLStrToAStr(slot));
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

TEST(ReadChangeKey, PointsIntoTheDocument)
{
    ParsedDocument const document("<ChangeKey>key</ChangeKey>");
    XMLCh const* slot = nullptr;
    XMLCh const* again = nullptr;
    ASSERT_TRUE(ReadChangeKey(document.Root(), slot));
    ASSERT_TRUE(ReadChangeKey(document.Root(), again));
    EXPECT_EQ(slot, document.Root()->getFirstChild()->getNodeValue()) << "nothing is copied";
    EXPECT_EQ(slot, again);
}

TEST(ReadChangeKey, AnswersFalseAndLeavesTheSlotAloneForANullNodeAndForAnyOtherName)
{
    XMLCh const* const before = u"before";
    XMLCh const* slot = before;
    EXPECT_FALSE(ReadChangeKey(nullptr, slot));
    ParsedDocument const document("<changekey>key<?ChangeKey key?></changekey>");
    EXPECT_FALSE(ReadChangeKey(document.Root(), slot));
    EXPECT_FALSE(ReadChangeKey(document.FirstNamed(u"ChangeKey"), slot)) << "an instruction is no element";
    EXPECT_EQ(slot, before);
}

}  // namespace KVR::Test
