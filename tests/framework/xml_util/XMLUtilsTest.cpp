#include "framework/xml_util/XMLUtils.h"

#include <gtest/gtest.h>

#include <string>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNodeList.hpp>

#include "tests/support/ParsedDocument.h"

namespace
{

using namespace KVR;
using Test::ParsedDocument;
using xercesc::DOMNode;

constexpr char const* kScene = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE Scene [
  <!ATTLIST Part Kind CDATA "solid">
  <!ENTITY Part "a text">
  <!ENTITY inner "B">
]>
<Scene>
  <?Part ID="p"?>
  <Holder>&Part;</Holder>
  <Part ID="p1" Label="Räder 日本 😀" Empty="" Visibility="1" Expanded="a&inner;&lt;&#x41;"
        Lines="a
b">the text</Part>
</Scene>)";

// Asks for the attribute in all three forms, and expects that none answers or touches its output.
void ExpectAbsent(DOMNode const* node, XMLCh const* name)
{
    UTF8String narrow("former");
    EXPECT_FALSE(XMLUtils::GetNodeAttribute(node, name, narrow));
    EXPECT_EQ(narrow, UTF8String("former"));
    UTF16String wide(L"former");
    EXPECT_FALSE(XMLUtils::GetNodeAttribute(node, name, wide));
    EXPECT_EQ(wide, UTF16String(L"former"));
    for (bool const former : {false, true})
    {
        bool flag = former;
        EXPECT_FALSE(XMLUtils::GetNodeAttribute(node, name, flag));
        EXPECT_EQ(flag, former);
    }
}

std::string NarrowAttribute(DOMNode const* node, XMLCh const* name)
{
    UTF8String value("absent");
    EXPECT_TRUE(XMLUtils::GetNodeAttribute(node, name, value));
    return value.Value();
}

class NodeAttributeOfAPart : public testing::Test
{
protected:
    ParsedDocument m_document{kScene};
    DOMNode const* m_part = m_document.Document().getElementsByTagName(u"Part")->item(0);
};

TEST_F(NodeAttributeOfAPart, IsReadAsNarrowText)
{
    EXPECT_EQ(NarrowAttribute(m_part, u"ID"), "p1");
    EXPECT_EQ(NarrowAttribute(m_part, u"Label"), "Räder 日本 😀");
}

TEST_F(NodeAttributeOfAPart, IsReadAsWideText)
{
    UTF16String value;
    EXPECT_TRUE(XMLUtils::GetNodeAttribute(m_part, u"Label", value));
    EXPECT_EQ(value, UTF16String(L"R\u00E4der \u65E5\u672C \U0001F600"));
}

TEST_F(NodeAttributeOfAPart, IsReadAsFlag)
{
    bool value = false;
    EXPECT_TRUE(XMLUtils::GetNodeAttribute(m_part, u"Visibility", value));
    EXPECT_TRUE(value);
    EXPECT_TRUE(XMLUtils::GetNodeAttribute(m_part, u"ID", value));
    EXPECT_FALSE(value);
}

TEST_F(NodeAttributeOfAPart, ExistsWhenItIsEmpty)
{
    UTF8String narrow("former");
    EXPECT_TRUE(XMLUtils::GetNodeAttribute(m_part, u"Empty", narrow));
    EXPECT_TRUE(narrow.IsEmpty());
    UTF16String wide(L"former");
    EXPECT_TRUE(XMLUtils::GetNodeAttribute(m_part, u"Empty", wide));
    EXPECT_TRUE(wide.IsEmpty());
    bool flag = true;
    EXPECT_TRUE(XMLUtils::GetNodeAttribute(m_part, u"Empty", flag));
    EXPECT_FALSE(flag);
}

TEST_F(NodeAttributeOfAPart, HasItsReferencesExpandedAndItsLineEndsMadeBlanks)
{
    EXPECT_EQ(NarrowAttribute(m_part, u"Expanded"), "aB<A");
    EXPECT_EQ(NarrowAttribute(m_part, u"Lines"), "a b");
}

TEST_F(NodeAttributeOfAPart, ExistsWhenTheDocumentTypeGivesItsValue)
{
    EXPECT_EQ(NarrowAttribute(m_part, u"Kind"), "solid");
}

TEST_F(NodeAttributeOfAPart, LeavesTheOutputAloneWhenItIsAbsent)
{
    ExpectAbsent(m_part, u"Missing");
    ExpectAbsent(m_part, u"");
}

TEST_F(NodeAttributeOfAPart, IsComparedWithRegardToCase)
{
    ExpectAbsent(m_part, u"id");
    ExpectAbsent(m_part, u"LABEL");
}

TEST_F(NodeAttributeOfAPart, IsAbsentFromEverythingButAnElement)
{
    ExpectAbsent(nullptr, u"ID");
    ExpectAbsent(m_part->getFirstChild(), u"ID");
    ExpectAbsent(m_part->getOwnerDocument(), u"ID");
    DOMNode const* const instruction = m_document.FirstNamed(u"Part");
    ASSERT_EQ(instruction->getNodeType(), DOMNode::PROCESSING_INSTRUCTION_NODE);
    ExpectAbsent(instruction, u"ID");
    DOMNode const* const reference = m_document.FirstNamed(u"Holder")->getFirstChild();
    ASSERT_EQ(reference->getNodeType(), DOMNode::ENTITY_REFERENCE_NODE);
    ExpectAbsent(reference, u"ID");
    ExpectAbsent(m_part->getAttributes()->item(0), u"ID");
}

struct FlagRow
{
    char const* text;
    bool value;
};

constexpr FlagRow kFlags[] = {
    {"1", true},      {"true", true}, {"True", true},   {"TRUE", true},   {"tRuE", true},
    {"", false},      {"0", false},   {"2", false},     {"-1", false},    {"01", false},
    {"11", false},    {"1.0", false}, {" 1", false},    {"1 ", false},    {"true ", false},
    {" true", false}, {"tru", false}, {"truer", false}, {"false", false}, {"False", false},
    {"yes", false},   {"on", false},  {"t", false},     {"１", false},    {"ＴＲＵＥ", false},
};

TEST(FlagAttribute, IsTrueForOneAndTrueInAnyCaseAlone)
{
    for (FlagRow const& row : kFlags)
    {
        ParsedDocument const document("<a Flag=\"" + std::string(row.text) + "\"/>");
        for (bool const former : {false, true})
        {
            bool value = former;
            EXPECT_TRUE(XMLUtils::GetNodeAttribute(document.Root(), u"Flag", value)) << row.text;
            EXPECT_EQ(value, row.value) << '"' << row.text << '"';
        }
    }
}

// The full path for the "Path" attribute of that text.
std::string FilePath(std::string const& path, wchar_t const* scene)
{
    ParsedDocument const document("<Info Path=\"" + path + "\"/>");
    return UTF8String(XMLUtils::GetFilePath(document.Root(), UTF16String(scene))).Value();
}

TEST(FilePath, IsTakenFromTheFolderOfTheScene)
{
    EXPECT_EQ(FilePath("side.bin", L"/models/a/scene.xml"), "/models/a/side.bin");
    EXPECT_EQ(FilePath("parts/side.bin", L"/models/a/scene.xml"), "/models/a/parts/side.bin");
    EXPECT_EQ(FilePath("side.bin", L"models/scene.xml"), "models/side.bin");
    EXPECT_EQ(FilePath("side.bin", L"/scene.xml"), "/side.bin");
    EXPECT_EQ(FilePath("side.bin", L"scene.xml"), "side.bin");
}

TEST(FilePath, StandsAsItIsWhenItIsAbsolute)
{
    EXPECT_EQ(FilePath("/x/side.bin", L"/models/a/scene.xml"), "/x/side.bin");
    EXPECT_EQ(FilePath("/x/../side.bin", L"scene.xml"), "/x/../side.bin");
}

TEST(FilePath, LetsTwoPointsPass)
{
    EXPECT_EQ(FilePath("../side.bin", L"/models/a/scene.xml"), "/models/a/../side.bin");
    EXPECT_EQ(FilePath("../../../../side.bin", L"/a/scene.xml"), "/a/../../../../side.bin");
}

TEST(FilePath, KeepsBlanksAndOtherScripts)
{
    EXPECT_EQ(FilePath("my side file.bin", L"/my models/scene.xml"), "/my models/my side file.bin");
    EXPECT_EQ(FilePath(" side.bin ", L"/a/scene.xml"), "/a/ side.bin ");
    EXPECT_EQ(FilePath("Räder/日本 😀.bin", L"/R\u00E4der \U0001F600/scene.xml"), "/Räder 😀/Räder/日本 😀.bin");
}

TEST(FilePath, IsEmptyWhenTheAttributeIsEmptyOrAbsent)
{
    EXPECT_EQ(FilePath("", L"/a/scene.xml"), "");
    ParsedDocument const document("<Info path=\"side.bin\"><?Path side.bin?></Info>");
    UTF16String const scene(L"/a/scene.xml");
    EXPECT_TRUE(XMLUtils::GetFilePath(document.Root(), scene).IsEmpty());
    EXPECT_TRUE(XMLUtils::GetFilePath(document.Root()->getFirstChild(), scene).IsEmpty());
    EXPECT_TRUE(XMLUtils::GetFilePath(nullptr, scene).IsEmpty());
}

}  // namespace
