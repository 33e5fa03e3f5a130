#include "framework/xml_util/SideFileParser.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "framework/xml_util/ReadObserver.h"
#include "framework/xml_util/XMLPlatform.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "tests/framework/xml_util/Damage.h"
#include "tests/support/TempFolder.h"

namespace
{

using namespace KVR;
using namespace std::string_literals;
using Test::TempFolder;

struct Notes
{
    std::vector<std::string> lines;
    // Whether one came from the parser, which alone knows where it is.
    bool isParsed = false;
    bool isWhole = false;
};

class Writer final : public SideFileReceiver
{
public:
    void Begin(SideFileElement const& element) override
    {
        std::string line = "<" + Narrow(element.name);
        for (SideFileAttribute const& attribute : element.attributes)
            line += " " + Narrow(attribute.name) + "=" + Narrow(attribute.value);
        notes.lines.push_back(line);
        notes.isParsed |= element.place != nullptr;
    }
    void End() override { notes.lines.emplace_back(">"); }

    Notes notes;

private:
    static std::string Narrow(XMLCh const* text) { return std::string(XMLStrUtil::XMLStrToAStr(text).View()); }
};

class NoObserver final : public ReadObserver
{
};

class SideFile : public ::testing::Test
{
protected:
    Notes Read(std::string_view bytes) const
    {
        UTF16String const path = m_folder.Write("side.xml", bytes);
        Writer writer;
        writer.notes.isWhole = ParseSideFile(path, writer);
        return writer.notes;
    }

    // As Read, which has to be what the parser says: it is asked when somebody observes.
    Notes ReadBothWays(std::string_view bytes) const
    {
        Notes const notes = Read(bytes);
        NoObserver observer;
        ReadObserverScope const scope(observer);
        Notes const parsed = Read(bytes);
        EXPECT_EQ(notes.lines, parsed.lines) << bytes.substr(0, 1000);
        EXPECT_EQ(notes.isWhole, parsed.isWhole) << bytes.substr(0, 1000);
        return notes;
    }

    TempFolder m_folder;

private:
    // Or every parse would begin and end Xerces.
    XMLPlatformScope m_platform;
};

constexpr std::string_view kPlain =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Ids a='\"'>\n\t<o.p-q_1 ID = \"R\xC3\xA4"
    "der &amp;&lt;&gt;&quot;&apos;&#10;\xF0\x9F\x98\x80>\"\tb=\"it's\"\n>\r<x/><y z=''\n/></o.p-q_1 >\n</Ids> \n";

TEST_F(SideFile, IsReadWithoutAParserWhenItIsPlain)
{
    Notes const notes = ReadBothWays(kPlain);
    EXPECT_TRUE(notes.isWhole);
    EXPECT_FALSE(notes.isParsed);
    EXPECT_EQ(notes.lines, (std::vector<std::string>{"<Ids a=\"", "<o.p-q_1 ID=Räder &<>\"'\n😀> b=it's", "<x", ">",
                                                     "<y z=", ">", ">", ">"}));
    for (char const* const plain :
         {"<a/>", "\n<a></a>", "<?xml version=\"1.0\"?><a/>",
          "<?xml version=\"1.0\" encoding=\"utf-8\"?><a b='&#9;&#38;&#x41;&#xd7fF;'/>", "\xEF\xBB\xBF<a b='\xC3\xA4'/>",
          "\xEF\xBB\xBF<?xml version=\"1.0\"?><!-- - <x> \xC3\xA4\n--><a><!----></a><!-- > -->"})
        EXPECT_FALSE(ReadBothWays(plain).isParsed) << plain;
}

TEST_F(SideFile, OfAnyOtherFormIsReadByTheParserFromWhereItBegins)
{
    std::string const front = "<r><o i='1'/>";
    std::string const others[] = {"<?p x?><o/></r>",
                                  "text<o/></r>",
                                  "<![CDATA[x]]><o/></r>",
                                  "&amp;<o/></r>",
                                  "<!-- x -- y --><o/></r>",
                                  "<!-- x --y<o/></r>",
                                  "<!-- \x01 --><o/></r>",
                                  "<!-- \xEF\xBF\xBE --><o/></r>",
                                  "<!- x --><o/></r>",
                                  "<!----->",
                                  "<!-- x",
                                  "<o a='&#x1F600;'/></r>",
                                  "<o a='&#xD800;'/></r>",
                                  "<o a='&#;&#x;'/></r>",
                                  "<o a='&#-1;'/></r>",
                                  "<o a='&#1F;'/></r>",
                                  "<o a='&#x\xC3\xA4;'/></r>",
                                  "<o a='&#65535;'/></r>",
                                  "<o a='&#1;'/></r>",
                                  "<o a='&e;'/></r>",
                                  "<o a='&'/></r>",
                                  "<o a='&amp'/></r>",
                                  "<o a='x\ny'/></r>",
                                  "<o a='\xEF\xBF\xBE'/></r>",
                                  "<o a='\xEF\xBF\xBD'/></r>",
                                  "<o a='\xC0\x80'/></r>",
                                  "<o a='x\0y'/></r>"s,
                                  "<o a='<'/></r>",
                                  "<o x:a='1'/></r>",
                                  "<o a='1' a='2'/></r>",
                                  "<o a='1'b='2'/></r>",
                                  "<o a=x/></r>",
                                  "<o a/></r>",
                                  "<\xC3\xA4/></r>",
                                  "<o></p></r>",
                                  "</r></r>",
                                  "</r><r/>",
                                  "</r>x",
                                  "</r><!-- x --><?p?>",
                                  "</r>\0"s,
                                  "<a><b><c><d><e><f><g><h/></g></f></e></d></c></b></a></r>",
                                  ""};
    for (std::string const& other : others)
    {
        Notes const notes = ReadBothWays(front + other);
        ASSERT_GE(notes.lines.size(), 3U) << other;
        EXPECT_EQ(notes.lines[1], "<o i=1") << other;
    }
    EXPECT_TRUE(ReadBothWays(front + "<?p x?><o/></r>").isParsed);
    for (char const* const other :
         {"", "x", "<", "<?xml version='1.0'?><a/>", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a b='\xE4'/>",
          "\xEF\xBB\xBF\xEF\xBB\xBF<a/>", "<!DOCTYPE a><a/>", "<!DOCTYPE a [<!ENTITY e 'E'>]><a/>", " <?xml?><a/>"})
        EXPECT_EQ(ReadBothWays(other).isParsed, ReadBothWays(other).lines.size() > 0) << other;
}

TEST_F(SideFile, CutOrDamagedGivesWhatTheParserGives)
{
    ForEachPrefix(kPlain, [this](std::string_view prefix) { ReadBothWays(prefix); });
    ForEachFlip(kPlain, [this](std::string_view damaged, std::size_t) { ReadBothWays(damaged); });
}

TEST_F(SideFile, OfAnyLengthHasItsTagsWhole)
{
    // Tags that lie across the ends of portions at every place, with characters of several bytes, one tag that is
    // larger than many portions, and more attributes than most have.
    std::mt19937 random(1);
    std::string text = "<r>";
    for (int i = 0; i < 20000; ++i)
    {
        std::string const value(random() % 20, 'v');
        text += "<o i='" + value + (i % 3 == 0 ? "\xC3\xA4\xF0\x9F\x98\x80" : "") + "'/>" + (i % 7 == 0 ? "\n" : "");
    }
    std::string const front = text;
    Notes const whole = ReadBothWays(front + "</r>");
    EXPECT_FALSE(whole.isParsed);
    EXPECT_EQ(whole.lines.size(), 40002U);
    EXPECT_TRUE(ReadBothWays(front + "<o i='" + std::string(300000, 'x') + "'/></r>").isWhole);
    std::string many = "<o";
    for (int i = 0; i < 100; ++i)
        many += " a" + std::to_string(i) + "='" + std::to_string(i) + "'";
    EXPECT_TRUE(ReadBothWays(front + many + "/></r>").isWhole);
    EXPECT_FALSE(ReadBothWays(front).isWhole);
}

TEST_F(SideFile, WhatTheReceiverThrowsGoesOn)
{
    class Thrower final : public SideFileReceiver
    {
    public:
        void Begin(SideFileElement const&) override { throw std::length_error("full"); }
        void End() override {}
    } thrower;
    for (char const* const text : {"<a/>", "<?p?><a/>"})
        EXPECT_THROW(ParseSideFile(m_folder.Write("side.xml", text), thrower), std::length_error);
}

}  // namespace
