#include "readers/NodeAttributes.h"

#include <gtest/gtest.h>

#include "framework/xml_util/XMLStrUtil.h"
#include "tests/support/ParsedDocument.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

TEST(ReadNodeAttributes, EntersEveryAttributeByItsName)
{
    ParsedDocument const document("<E b='2' a='' \xC3\xA4='\xE6\xA8\xA1' A='upper' n:x='y' xmlns:n='urn:n'/>");
    AttributeMap attributes;
    EXPECT_TRUE(ReadNodeAttributes(document.Root(), attributes));
    ASSERT_EQ(attributes.size(), 6U);
    EXPECT_EQ(Text(attributes["b"]), "2");
    EXPECT_EQ(Text(attributes["a"]), "");
    EXPECT_EQ(Text(attributes["A"]), "upper") << "names are case-sensitive";
    EXPECT_EQ(Text(attributes["\xC3\xA4"]), "\xE6\xA8\xA1");
    EXPECT_EQ(Text(attributes["n:x"]), "y") << "under the name as written";
    EXPECT_EQ(Text(attributes["xmlns:n"]), "urn:n");
}

TEST(ReadNodeAttributes, OfAnElementWithoutAttributesAddsNothingAndAnswersTrue)
{
    ParsedDocument const document("<E/>");
    AttributeMap attributes;
    EXPECT_TRUE(ReadNodeAttributes(document.Root(), attributes));
    EXPECT_TRUE(attributes.empty());
}

TEST(ReadNodeAttributes, KeepsTheValueOfANameThatIsThereAlready)
{
    ParsedDocument const document("<E a='new' b='2'/>");
    AttributeMap attributes;
    attributes["a"] = Wide("old");
    EXPECT_TRUE(ReadNodeAttributes(document.Root(), attributes));
    EXPECT_EQ(Text(attributes["a"]), "old");
    EXPECT_EQ(Text(attributes["b"]), "2");
}

TEST(ReadNodeAttributes, AnswersFalseForANullNodeAndForAnyThatIsNoElement)
{
    ParsedDocument const document(
        "<!DOCTYPE E [<!ENTITY ent 'x'>]><E a='1'>text<!--comment--><?pi a='1'?><![CDATA[c]]>&ent;</E>");
    AttributeMap attributes;
    EXPECT_FALSE(ReadNodeAttributes(nullptr, attributes));
    int others = 0;
    for (auto const* node = document.Root()->getFirstChild(); node; node = node->getNextSibling(), ++others)
        EXPECT_FALSE(ReadNodeAttributes(node, attributes)) << node->getNodeType();
    EXPECT_EQ(others, 5);
    EXPECT_FALSE(ReadNodeAttributes(&document.Document(), attributes));
    EXPECT_TRUE(attributes.empty());
}

TEST(AttributeOrEmpty, GivesTheEmptyTextForAnAbsentAttribute)
{
    ParsedDocument const document("<E ID='1'/>");
    EXPECT_EQ(XMLStrUtil::XMLStrToInt(AttributeOrEmpty(document.Root(), Names::ID)), 1);
    EXPECT_EQ(*AttributeOrEmpty(document.Root(), Names::Label), 0);
    EXPECT_EQ(*AttributeOrEmpty(nullptr, Names::ID), 0);
}

}  // namespace KVR::Test
