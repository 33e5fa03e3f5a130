#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "framework/xml_util/DomWalk.h"
#include "tests/support/ParsedDocument.h"

namespace
{

using namespace KVR;
using Test::ParsedDocument;
using xercesc::DOMNode;

std::u16string_view ContentOf(ParsedDocument const& document)
{
    XMLCh const* const text = TextContent(document.Root());
    return text ? std::u16string_view(text) : u"no text";
}

// Compares every node below and at this one with the DOM's own answer.
void ExpectTheContentsOfTheDom(DOMNode* node, char const* xml, int& compared)
{
    XMLCh const* const expected = node->getTextContent();
    XMLCh const* const actual = TextContent(node);
    ASSERT_NE(expected, nullptr) << xml;
    ASSERT_NE(actual, nullptr) << xml;
    EXPECT_TRUE(std::u16string_view(actual) == std::u16string_view(expected)) << xml;
    ++compared;
    for (DOMNode* child = node->getFirstChild(); child; child = child->getNextSibling())
    {
        if (child->getNodeType() != DOMNode::COMMENT_NODE &&
            child->getNodeType() != DOMNode::PROCESSING_INSTRUCTION_NODE)
            ExpectTheContentsOfTheDom(child, xml, compared);
    }
}

TEST(TextContent, IsWhatTheDomAnswersItself)
{
    constexpr char const* kDocuments[] = {
        "<a/>",
        "<a></a>",
        "<a>t</a>",
        "<a> \t\n </a>",
        "<a>t<b/>u</a>",
        "<a>t<b>u</b>v</a>",
        "<a><b>u</b></a>",
        "<a><b><c><d>deep</d></c></b></a>",
        "<a>1<b>2<c>3<d>4</d>5</c>6</b>7</a>",
        "<a><b>1</b><b>2</b><b><c/></b><b>3</b></a>",
        "<a>\n  <b> x </b>\n  <c>\n</c>\n</a>",
        "<a><![CDATA[]]></a>",
        "<a><![CDATA[<b>t</b>]]></a>",
        "<a>x<![CDATA[y]]>z</a>",
        "<a><![CDATA[x]]><![CDATA[y]]></a>",
        "<a><!--c--></a>",
        "<a><!--c-->t</a>",
        "<a>t<!--c--></a>",
        "<a>t<!--c-->u<b><!--c--></b></a>",
        "<a><?p i?></a>",
        "<a>t<?p i?>u</a>",
        "<a><?p i?>t</a>",
        "<a>&lt;&amp;&#x41;&#xE4;&#x65E5;&#x1F600;</a>",
        "<a>Räder<b>\xF0\x9F\x98\x80</b></a>",
        "<a b='attribute'>t</a>",
        "<!DOCTYPE a [<!ENTITY e 'E'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ENTITY e 'E'>]><a>x&e;y</a>",
        "<!DOCTYPE a [<!ENTITY e 'E'>]><a>&e;&e;<b>&e;</b></a>",
        "<!DOCTYPE a [<!ENTITY e ''>]><a>&e;</a>",
        "<!DOCTYPE a [<!ENTITY e 'E'><!ENTITY f '&e;F&e;'>]><a>x&f;y</a>",
        "<!DOCTYPE a [<!ENTITY e 'x<b>y<!--c-->z</b><?p i?>w'>]><a>&e;<c/></a>",
        "<!DOCTYPE a [<!ENTITY e '<![CDATA[<]]>'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ELEMENT a (b)><!ELEMENT b (#PCDATA)>]><a>\n <b> t </b>\n </a>",
        "<a xmlns='urn:any'>t<b xmlns=''>u</b></a>",
    };
    int compared = 0;
    for (char const* const xml : kDocuments)
        ExpectTheContentsOfTheDom(ParsedDocument(xml).Root(), xml, compared);
    EXPECT_GT(compared, 80);
}

TEST(TextContent, LeavesOutCommentsAndProcessingInstructions)
{
    EXPECT_EQ(ContentOf(ParsedDocument("<a>1<!--c-->2<?p i?>3<b><!--c-->4</b><![CDATA[<5>]]></a>")), u"1234<5>");
}

TEST(TextContent, FollowsEntityReferences)
{
    ParsedDocument const document("<!DOCTYPE a [<!ENTITY e '<b>E</b>'>]><a>x&e;y</a>");
    ASSERT_NE(document.FirstNamed(u"e"), nullptr);
    EXPECT_EQ(ContentOf(document), u"xEy");
}

TEST(TextContent, IsEmptyForAnElementWithoutText)
{
    EXPECT_EQ(ContentOf(ParsedDocument("<a/>")), u"");
    EXPECT_EQ(ContentOf(ParsedDocument("<a><b/><!--c--></a>")), u"");
}

TEST(TextContent, IsNullForANullNode)
{
    EXPECT_EQ(TextContent(nullptr), nullptr);
}

TEST(TextContent, StaysWhileTheDocumentLives)
{
    ParsedDocument const document("<a>1<b>2</b>3</a>");
    XMLCh const* const first = TextContent(document.Root());
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(std::u16string_view(TextContent(document.Root())), u"123");
    EXPECT_EQ(std::u16string_view(first), u"123");
}

TEST(TextContent, IsReadThroughAHundredThousandLevels)
{
    constexpr int kLevels = 100000;
    std::string xml;
    for (int i = 0; i < kLevels; ++i)
        xml += "<a xmlns=\"\">";
    xml += "deep";
    for (int i = 0; i < kLevels; ++i)
        xml += "</a>";
    EXPECT_EQ(ContentOf(ParsedDocument(xml)), u"deep");
}

TEST(TextContent, OfTenMillionCharactersIsReadWhole)
{
    std::string const text(10000000, 't');
    ParsedDocument const document("<a>" + text + "<b/>" + "end</a>");
    std::u16string_view const content = ContentOf(document);
    EXPECT_EQ(content.size(), text.size() + 3);
    EXPECT_EQ(content.substr(content.size() - 4), u"tend");
}

}  // namespace
