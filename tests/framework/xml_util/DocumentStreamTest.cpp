#include "framework/xml_util/DocumentStream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "framework/xml_util/DocumentPolicy.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using ::testing::ElementsAre;

class Lines final : public DocumentReceiver
{
public:
    void Receive(StreamedElement const& element) override
    {
        lines.push_back(std::to_string(element.number) + " " + Text(XMLStrUtil::XMLStrToAStr(element.name)) + " at " +
                        std::to_string(element.line) + ":" + std::to_string(element.column) + ", byte " +
                        std::to_string(element.end) + ", depth " + std::to_string(element.depth) + ", attributes " +
                        std::to_string(element.attributes->getLength()));
    }
    void ReceiveEnd(std::uint64_t number, std::uint64_t end) override
    {
        lines.push_back("end of " + std::to_string(number) + " at byte " + std::to_string(end));
    }

    std::vector<std::string> lines;
};

class DocumentStream : public ::testing::Test
{
protected:
    DocumentStream() : m_policy(CurrentDocumentPolicy()) { SetDocumentPolicy(DocumentPolicy::Untrusted()); }
    ~DocumentStream() override { SetDocumentPolicy(m_policy); }

    DocumentStreamEnd Stream(std::string const& text)
    {
        std::string const path = m_folder.Path() + "/d.xml";
        std::ofstream(path, std::ios::binary) << text;
        return StreamDocument(UTF16String(UTF8String(path)), m_lines);
    }

    TempFolder m_folder;
    DocumentPolicy m_policy;
    Lines m_lines;
};

}  // namespace

TEST_F(DocumentStream, GivesEachElementItsNumberAndPlace)
{
    DocumentStreamEnd const end = Stream("<r xmlns='u'>\n<a b='ö'\nc='2'/><d>t</d></r>");
    EXPECT_TRUE(end.isWhole);
    EXPECT_THAT(m_lines.lines,
                ElementsAre("0 r at 1:14, byte 13, depth 0, attributes 1", "1 a at 3:8, byte 31, depth 1, attributes 2",
                            "end of 1 at byte 31", "2 d at 3:11, byte 34, depth 1, attributes 0", "end of 2 at byte 39",
                            "end of 0 at byte 43"));
}

TEST_F(DocumentStream, TellsWhereADocumentIsNotWellFormed)
{
    DocumentStreamEnd const end = Stream("<r>\n<a></r>");
    EXPECT_FALSE(end.isWhole);
    EXPECT_EQ(end.line, 2U);
    DocumentStreamEnd const absent = StreamDocument(Wide("/nowhere/at/all"), m_lines);
    EXPECT_FALSE(absent.isWhole);
    EXPECT_EQ(absent.line, 0U) << "there is no place";
    EXPECT_EQ(absent.column, 0U);
}

TEST_F(DocumentStream, StaysWithinThePolicy)
{
    EXPECT_FALSE(Stream("<!DOCTYPE r [<!ENTITY e 'x'>]><r>&e;</r>").isWhole);
    std::string deep;
    for (int i = 0; i < 10'001; ++i)
        deep += "<r>";
    EXPECT_FALSE(Stream(deep).isWhole);
    EXPECT_EQ(m_lines.lines.size(), 10'000U);
}

TEST_F(DocumentStream, KnowsNoBytesOfWhatAnEntityBrings)
{
    DocumentPolicy policy = DocumentPolicy::Untrusted();
    policy.documentTypes = true;
    SetDocumentPolicy(policy);
    EXPECT_TRUE(Stream("<!DOCTYPE r [<!ENTITY e '<x/>'>]><r>&e;</r>").isWhole);
    EXPECT_THAT(m_lines.lines, ::testing::Contains(::testing::HasSubstr("x at 1:40, byte 0")));
}

}  // namespace KVR::Test
