#include "framework/xml_util/FileInputSource.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/BinInputStream.hpp>

#include "framework/api/UTF8String.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/XMLPlatform.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "tests/support/TempFolder.h"

namespace
{

using namespace KVR;
using Test::TempFolder;

class FileSource : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_platform.IsAcquired());
        ASSERT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    }

    // What the stream of a source delivers, asked for in portions; "no stream" when there is none.
    static std::string Bytes(FileInputSource const& source, std::size_t portion = 4096)
    {
        std::unique_ptr<xercesc::BinInputStream> const stream(source.makeStream());
        if (!stream)
            return "no stream";
        std::string bytes;
        std::string buffer(portion, '?');
        for (;;)
        {
            EXPECT_EQ(stream->curPos(), bytes.size());
            XMLSize_t const got = stream->readBytes(reinterpret_cast<XMLByte*>(buffer.data()), buffer.size());
            if (got == 0)
                return bytes;
            bytes.append(buffer, 0, got);
        }
    }
    std::string BytesOf(std::string_view name) const { return Bytes(FileInputSource(m_folder.PathOf(name))); }

    XMLPlatformScope m_platform;
    TempFolder m_folder;
};

constexpr char const* kNames[] = {
    "plain.xml",  "two words.xml", " blank.xml ", "Räder.xml",         "日本語.xml", "😀.xml",
    "100%41.xml", "a#b?c&d.xml",   "a\\b.xml",    "file:___scene.xml", "'\"<>.xml",  "inner folder/Räder/s.xml",
};

TEST_F(FileSource, OpensFilesByNamesInAnyScriptUnderTheClassicLocale)
{
    for (char const* const name : kNames)
    {
        m_folder.Write(name, name);
        EXPECT_EQ(BytesOf(name), name);
    }
}

TEST_F(FileSource, IsParsedByNamesInAnyScriptUnderTheClassicLocale)
{
    for (char const* const name : kNames)
    {
        FileInputSource const source(m_folder.Write(name, "<a>" + std::string("text") + "</a>"));
        xercesc::XercesDOMParser parser;
        parser.parse(source);
        ASSERT_NE(parser.getDocument(), nullptr) << name;
        ASSERT_NE(parser.getDocument()->getDocumentElement(), nullptr) << name;
        EXPECT_TRUE(Equals(TextContent(parser.getDocument()->getDocumentElement()), u"text")) << name;
    }
}

TEST_F(FileSource, GivesTheBytesAsTheyAreInPortionsOfAnySize)
{
    std::string bytes;
    for (int i = 0; i < 100003; ++i)
        bytes.push_back(static_cast<char>(i % 256));
    FileInputSource const source(m_folder.Write("bytes.xml", bytes));
    for (std::size_t const portion : {1U, 7U, 4096U, 49152U, 200000U})
        EXPECT_TRUE(Bytes(source, portion) == bytes) << portion;
}

TEST_F(FileSource, OfAnEmptyFileHasAStreamWithoutBytes)
{
    m_folder.Write("empty.xml", "");
    EXPECT_EQ(BytesOf("empty.xml"), "");
}

TEST_F(FileSource, HasNoStreamForWhatIsNoRegularFile)
{
    m_folder.MakeFolder("folder.xml");
    m_folder.MakeFifo("fifo.xml");
    for (char const* const name : {"missing.xml", "folder.xml", "fifo.xml", "", "no/such/folder.xml"})
        EXPECT_EQ(BytesOf(name), "no stream") << name;
    EXPECT_EQ(Bytes(FileInputSource(UTF16String())), "no stream");
    EXPECT_EQ(Bytes(FileInputSource(L"/dev/zero")), "no stream");
}

TEST_F(FileSource, ThatHasNoStreamGivesNoDocument)
{
    m_folder.MakeFolder("folder.xml");
    m_folder.MakeFifo("fifo.xml");
    for (char const* const name : {"missing.xml", "folder.xml", "fifo.xml"})
    {
        FileInputSource const source(m_folder.PathOf(name));
        xercesc::XercesDOMParser parser;
        parser.parse(source);
        EXPECT_EQ(parser.getErrorCount(), 1U) << name;
        EXPECT_TRUE(!parser.getDocument() || !parser.getDocument()->getDocumentElement()) << name;
    }
}

TEST_F(FileSource, GivesAStreamOfItsOwnEachTime)
{
    FileInputSource const source(m_folder.Write("s.xml", "abc"));
    std::unique_ptr<xercesc::BinInputStream> const first(source.makeStream());
    std::unique_ptr<xercesc::BinInputStream> const second(source.makeStream());
    ASSERT_TRUE(first && second);
    XMLByte byte = 0;
    EXPECT_EQ(first->readBytes(&byte, 1), 1U);
    EXPECT_EQ(second->readBytes(&byte, 1), 1U);
    EXPECT_EQ(byte, 'a');
    EXPECT_EQ(Bytes(source), "abc");
}

TEST_F(FileSource, HasTheAbsolutePathForItsSystemId)
{
    auto const systemId = [](char const* path)
    { return XMLStrUtil::XMLStrToAStr(FileInputSource(UTF16String(UTF8String(path))).getSystemId()); };
    EXPECT_EQ(systemId("/a b/Räder 😀.xml"), UTF8String("/a b/Räder 😀.xml"));
    std::string const current = std::filesystem::current_path();
    EXPECT_EQ(systemId("a/scene.xml"), UTF8String(current + "/a/scene.xml"));
}

TEST_F(FileSource, IsWhereReferencesOfItsDocumentStart)
{
    m_folder.Write("inner/part.ent", "from beside it");
    FileInputSource const source(
        m_folder.Write("inner/scene.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'part.ent'>]><a>&e;</a>"));
    xercesc::XercesDOMParser parser;
    parser.parse(source);
    EXPECT_TRUE(Equals(TextContent(parser.getDocument()->getDocumentElement()), u"from beside it"));
}

}  // namespace
