#include "framework/xml_util/DomWalk.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/ParsedDocument.h"

namespace
{

using namespace KVR;
using Test::ParsedDocument;
using xercesc::DOMNode;

constexpr ElementName kPart(u"Part", "Part");
constexpr AttributeName kEmpty(u"Empty", "Empty");

using Texts = std::vector<std::string>;

// The values of "ID" of the nodes that a walk gives.
Texts IdsOf(ChildElements const& children)
{
    Texts ids;
    for (DOMNode* const child : children)
    {
        std::string id;
        for (XMLCh const* text = AttributeText(child, Names::ID); text && *text; ++text)
            id.push_back(static_cast<char>(*text));
        ids.push_back(id);
    }
    return ids;
}

constexpr char const* kImpostors = R"(<!DOCTYPE Scene [ <!ENTITY Part "<Part ID='inside'/>"> ]>
<Scene>text<Part ID="1"/><!--Part--><?Part ID="2"?>&Part;<![CDATA[<Part ID="3"/>]]><Part ID="4"><Part ID="5"/></Part>
<part ID="6"/></Scene>)";

TEST(Children, AreTheElementsInDocumentOrderAndNothingElse)
{
    ParsedDocument const document(kImpostors);
    EXPECT_EQ(IdsOf(Children(document.Root())), Texts({"1", "4", "6"}));
}

TEST(Children, AreNoneForANullNodeAndForOneWithoutElements)
{
    EXPECT_EQ(IdsOf(Children(nullptr)), Texts());
    ParsedDocument const document("<a>text<!--c--><?p?></a>");
    EXPECT_EQ(IdsOf(Children(document.Root())), Texts());
    EXPECT_EQ(IdsOf(Children(document.Root()->getFirstChild())), Texts());
}

TEST(Children, OfADocumentAreItsRoot)
{
    ParsedDocument const document("<?Part?><!--c--><Part ID=\"root\"/><?Part?>");
    EXPECT_EQ(IdsOf(Children(&document.Document())), Texts({"root"}));
}

TEST(NamedNode, IsAnElementAlthoughOthersBearTheName)
{
    ParsedDocument const document(kImpostors);
    int bearers = 0;
    int elements = 0;
    for (DOMNode* node = document.Root()->getFirstChild(); node; node = node->getNextSibling())
    {
        bearers += Equals(node->getNodeName(), u"Part");
        elements += IsNamed(node, kPart);
        EXPECT_EQ(IsElement(node), node->getNodeType() == DOMNode::ELEMENT_NODE);
    }
    EXPECT_EQ(bearers, 4);
    EXPECT_EQ(elements, 2);
    EXPECT_FALSE(IsNamed(nullptr, kPart));
    EXPECT_FALSE(IsElement(nullptr));
}

TEST(Names, AreEqualWhenAllTheirCharactersAre)
{
    EXPECT_TRUE(Equals(u"Part", u"Part"));
    EXPECT_TRUE(Equals(u"", u""));
    EXPECT_TRUE(Equals(u"R\u00E4der", u"R\u00E4der"));
    for (char16_t const* const other : {u"", u"P", u"Par", u"Parts", u"part", u"PART", u" Part", u"x:Part"})
        EXPECT_FALSE(Equals(other, u"Part"));
    EXPECT_FALSE(Equals(u"Part", u""));
    EXPECT_FALSE(Equals(nullptr, u"Part"));
    EXPECT_FALSE(Equals(nullptr, u""));
}

TEST(NamesInAnyCase, DifferInTheLettersFromAToZAlone)
{
    EXPECT_TRUE(EqualsAnyCase(u"Styles", u"styles"));
    EXPECT_TRUE(EqualsAnyCase(u"STYLES", u"Styles"));
    EXPECT_TRUE(EqualsAnyCase(u"azAZ", u"AZaz"));
    EXPECT_FALSE(EqualsAnyCase(u"Style", u"Styles"));
    EXPECT_FALSE(EqualsAnyCase(u"Styless", u"Styles"));
    EXPECT_FALSE(EqualsAnyCase(nullptr, u"Styles"));
    // The Kelvin sign is a k to Unicode, the long s an s; characters beside the letters have their bit of case too.
    EXPECT_FALSE(EqualsAnyCase(u"Lin\u212A", u"Link"));
    EXPECT_FALSE(EqualsAnyCase(u"\u017Ftyles", u"Styles"));
    EXPECT_FALSE(EqualsAnyCase(u"R\u00C4DER", u"r\u00E4der"));
    EXPECT_FALSE(EqualsAnyCase(u"a[b", u"a{b"));
    EXPECT_FALSE(EqualsAnyCase(u"a@b", u"a`b"));
    EXPECT_TRUE(EqualsAnyCase(u"R\u00E4DER", u"r\u00E4der"));
}

class MatchedRows : public testing::Test
{
protected:
    // The names of the rows that ran for a document's root.
    Texts Run(char const* xml)
    {
        ParsedDocument const document(xml);
        Texts ran;
        m_isMatch = Match(document.Root(), On(kPart, [&] { ran.push_back("Part"); }),
                          OnAnyCase(Names::Styles, [&] { ran.push_back("Styles"); }),
                          On(ElementName(u"STYLES", "STYLES"), [&] { ran.push_back("STYLES"); }),
                          On(kPart, [&] { ran.push_back("Part again"); }),
                          OnAnyCase(ElementName(u"part", "part"), [&] { ran.push_back("part"); }));
        return ran;
    }

    bool m_isMatch = false;
};

TEST_F(MatchedRows, RunOnlyTheFirstThatMatches)
{
    EXPECT_EQ(Run("<Part/>"), Texts({"Part"}));
    EXPECT_TRUE(m_isMatch);
    EXPECT_EQ(Run("<STYLES/>"), Texts({"Styles"}));
    EXPECT_TRUE(m_isMatch);
}

TEST_F(MatchedRows, DisregardCaseOnlyWhenTheySaySo)
{
    EXPECT_EQ(Run("<pArT/>"), Texts({"part"}));
    EXPECT_TRUE(m_isMatch);
    EXPECT_EQ(Run("<styleS/>"), Texts({"Styles"}));
    EXPECT_TRUE(m_isMatch);
}

TEST_F(MatchedRows, RunNothingForAnyOtherName)
{
    for (char const* const xml : {"<Parts/>", "<Par/>", "<x:Part xmlns:x='u'/>", "<ſtyles/>"})
    {
        EXPECT_EQ(Run(xml), Texts()) << xml;
        EXPECT_FALSE(m_isMatch) << xml;
    }
}

TEST_F(MatchedRows, CompareTheQualifiedNameWhateverTheNamespace)
{
    EXPECT_EQ(Run("<Part xmlns='urn:any'/>"), Texts({"Part"}));
}

TEST(AttributeText, IsTheDocumentsOwn)
{
    ParsedDocument const document("<a ID='p1' Empty=''/>");
    XMLCh const* const text = AttributeText(document.Root(), Names::ID);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::u16string_view(text), u"p1");
    EXPECT_EQ(AttributeText(document.Root(), Names::ID), text);
    ASSERT_NE(AttributeText(document.Root(), kEmpty), nullptr);
    EXPECT_EQ(std::u16string_view(AttributeText(document.Root(), kEmpty)), u"");
}

TEST(AttributeText, IsNullWithoutTheAttributeOrAnElement)
{
    ParsedDocument const document(kImpostors);
    EXPECT_EQ(AttributeText(document.Root(), Names::ID), nullptr);
    EXPECT_EQ(AttributeText(nullptr, Names::ID), nullptr);
    for (DOMNode* node = document.Root()->getFirstChild(); node; node = node->getNextSibling())
        EXPECT_EQ(AttributeText(node, Names::ID) != nullptr, IsElement(node));
}

}  // namespace
