// What a scene consists of and what reading it takes, without reading it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <string>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "framework/api/IOUtil.h"
#include "framework/api/Unicode.h"
#include "framework/xml_util/DomWalk.h"
#include "inspect/estimate/DocumentText.h"
#include "inspect/estimate/SceneCensus.h"
#include "inspect/estimate/SizeText.h"
#include "tests/support/ParsedDocument.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::HasSubstr;
using Problem = DocumentCensus::Problem;

struct Census : SceneCensus
{
    explicit Census(std::string const& document)
    {
        folder.Write("s.xml", document);
        static_cast<SceneCensus&>(*this) = SceneCensus::Of(folder.NarrowPathOf("s.xml"));
    }
    TempFolder folder;
};

std::string ContentOf(std::filesystem::path const& path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

struct Counted
{
    std::uint64_t elements = 0;
    std::uint64_t attributes = 0;
    std::uint64_t depth = 0;

    explicit Counted(xercesc::DOMNode const* root) { Add(root, 1); }

private:
    void Add(xercesc::DOMNode const* element, std::uint64_t level)
    {
        ++elements;
        attributes += element->getAttributes()->getLength();
        depth = std::max(depth, level);
        for (xercesc::DOMNode const* const child : Children(element))
            Add(child, level + 1);
    }
};

void ExpectAsParsed(std::string const& document, std::string const& name)
{
    ParsedDocument const parsed(document);
    Counted const counted(parsed.Root());
    Census const census(document);
    EXPECT_EQ(census.problem, Problem::kNone) << name;
    EXPECT_EQ(census.document.elements, counted.elements) << name;
    EXPECT_EQ(census.document.attributes, counted.attributes) << name;
    EXPECT_EQ(census.document.depth, counted.depth) << name;
}

std::string Utf16(std::string const& text, bool isLow, bool hasMark)
{
    std::string bytes;
    for (char16_t const unit : (hasMark ? u"\uFEFF" : u"") + Unicode::Utf16FromUtf8(text))
    {
        bytes.push_back(static_cast<char>(isLow ? unit & 0xFF : unit >> 8));
        bytes.push_back(static_cast<char>(isLow ? unit >> 8 : unit & 0xFF));
    }
    return bytes;
}

}  // namespace

TEST(Census, CountsAsAParserDoes)
{
    ExpectAsParsed(
        "<?xml version='1.0'?><!-- a < b - > c --><S a='>' b=\"'/>\"><!----><A/><B c = '1'\n></B ></S>\n"
        "<?kvr-side-files ?>\n",
        "tags");
    ExpectAsParsed("<S><![CDATA[<A/>]]]]><A/><![CDATA[]]><?p <B/>?\?><C x='&lt;'/>text</S>", "sections");
    ExpectAsParsed("<!DOCTYPE S [<!ENTITY e '<X/>'><!-- don't > --><?p ' ?><!ELEMENT S ANY>]><S><A/></S>", "type");
    ExpectAsParsed("<T\xC3\xA4g \xC3\xA4='1'/>", "names");
}

TEST(Census, CountsAllExamplesAsAParserDoes)
{
    std::size_t count = 0;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(KVR_EXAMPLES_DIR))
        if (entry.path().extension() == ".xml" && ++count > 0)
            ExpectAsParsed(ContentOf(entry.path()), entry.path());
    EXPECT_GE(count, 3U);
}

TEST(Census, CountsInEveryEncodingThatCanHoldAsciiOrIsUtf16)
{
    std::string const text = "<S \xC3\xA4='\xF0\x9F\x94\xA9'><IPart/><T\xC3\xA4g/></S>";
    for (bool const isLow : {true, false})
        for (bool const hasMark : {true, false})
        {
            Census const census(Utf16(text, isLow, hasMark));
            EXPECT_EQ(census.problem, Problem::kNone);
            EXPECT_EQ(census.document.elements, 3U);
            EXPECT_EQ(census.document.Named("T\xC3\xA4g"), 1U);
            EXPECT_EQ(census.document.attributeBytes, 4U);
        }
    EXPECT_EQ(Census("\xEF\xBB\xBF<S/>").document.elements, 1U);
    EXPECT_EQ(Census(std::string("\0\0\0<\0\0\0S", 8)).problem, Problem::kEncoding);
    EXPECT_EQ(Census("\x4C\x6F\xA7\x94").problem, Problem::kEncoding);
}

TEST(Census, TakesPairsApartAtTheEdgeOfAPiece)
{
    // A piece has 256 KiB, and the mark takes the first two bytes: one of the pairs lies across the edge.
    std::string text = "<S a='";
    for (int i = 0; i < 100'000; ++i)
        text += "\xF0\x9F\x94\xA9";
    text += "'/>";
    for (std::string const& blank : {std::string(), std::string(" ")})
        EXPECT_EQ(Census(Utf16(blank + text, true, true)).document.attributeBytes, 400'000U);
}

TEST(Census, TellsADocumentThatIsNotWhole)
{
    for (char const* const text :
         {"", " ", "<", "<S", "<S a", "<S a=", "<S a='", "<S a='1'", "<S>", "<S/></S>", "<S/", "<S a=1/>", "<!-- <S/>",
          "<S><![CDATA[ ]>", "<?p", "<!DOCTYPE S [", "text", "<S a b='1'/>"})
        EXPECT_EQ(Census(text).problem, Problem::kMalformed) << text;
    TempFolder const folder;
    EXPECT_EQ(SceneCensus::Of(folder.NarrowPathOf("none.xml")).problem, Problem::kUnreadable);
    EXPECT_EQ(SceneCensus::Of(folder.Path()).problem, Problem::kUnreadable);
}

TEST(Census, ListsTheSideFilesThatAReaderWouldOpen)
{
    Census const census(
        "<S><MeshInfo GenerateMesh='true' Path='off.mesh'/><MeshInfo GenerateMesh='True'/>"
        "<MeshInfo GenerateMesh='&#84;rue' Path='a&amp;b&#x20;.mesh'/><X><SatInfo Path='deep.sab'/></X>"
        "<IUniverse><CustomData><CustomDataItem Type='8' Path='b' BlobBufferSize='12'/>"
        "<CustomDataItem Type='5' Path='c'/></CustomData></IUniverse></S>");
    ASSERT_EQ(census.sideFiles.size(), 2U);
    EXPECT_EQ(census.sideFiles[0].name, "a&b .mesh");
    EXPECT_EQ(census.sideFiles[0].kind, SideFileCensus::Kind::kMeshStore);
    EXPECT_EQ(census.sideFiles[0].size, std::nullopt);
    EXPECT_EQ(census.sideFiles[1].kind, SideFileCensus::Kind::kBlob);
    EXPECT_EQ(census.document.mentions[1].claimed, 12U);
}

TEST(Census, TellsHowManyPropertiesFindTheirObjects)
{
    std::string entries;
    for (int i = 0; i < 10; ++i)
        entries += "<Property ID='p' ObjectID=\"" + std::string(i < 4 ? "here" : "gone") + std::to_string(i) + "\"/>\n";
    TempFolder const folder;
    folder.Write("s.kvrproperty", "<Properties>" + entries + "</Properties>");
    folder.Write("s.xml", "<S><A ID='here0'/><A ID='here1'/><A ID='here2'/><A ID='here3'/><A ID='other'/></S>");
    SceneCensus const census = SceneCensus::Of(folder.NarrowPathOf("s.xml"));
    ASSERT_EQ(census.sideFiles.size(), 1U);
    EXPECT_EQ(census.sideFiles[0].records, 10U);
    EXPECT_DOUBLE_EQ(census.sideFiles[0].kept, 0.4);
}

TEST(Census, ACostGrowsWithWhatThereIsAndNotWithWhatAHeadClaims)
{
    auto const sceneOf = [](int parts)
    {
        std::string text = "<S>";
        for (int i = 0; i < parts; ++i)
            text += "<IPart ID='part" + std::to_string(i) + "' Label='a'/>\n";
        return Census(text + "</S>").Cost();
    };
    ReadingCost const none = sceneOf(0);
    ReadingCost const some = sceneOf(1000);
    ReadingCost const many = sceneOf(10'000);
    EXPECT_NEAR((many.bytes - none.bytes) / (some.bytes - none.bytes), 10.0, 0.1);
    EXPECT_NEAR((many.seconds - none.seconds) / (some.seconds - none.seconds), 10.0, 0.1);
    TempFolder const folder;
    folder.Write("s.xml", "<S><MeshInfo GenerateMesh='True' Path='m'/></S>");
    folder.Write("m", std::string(8, '\0') + std::string(8, '\xFF') + std::string(8, '\0'));
    SceneCensus const census = SceneCensus::Of(folder.NarrowPathOf("s.xml"));
    EXPECT_EQ(census.sideFiles.at(0).records, 0xFFFF'FFFF'FFFF'FFFFU);
    EXPECT_LT(census.Cost().bytes, 1e6);
}

TEST(ResolvedReferences, AreCharactersAndTheFiveEntities)
{
    EXPECT_EQ(ResolvedReferences("a&amp;&lt;&gt;&quot;&apos;b"), "a&<>\"'b");
    EXPECT_EQ(ResolvedReferences("&#65;&#x42;&#x1F529;"), "AB\xF0\x9F\x94\xA9");
    EXPECT_EQ(ResolvedReferences("&other; & &#x110000; &#0; &#9"), "&other; & &#x110000; &#0; &#9");
}

TEST(SizeText, HasThreeDigits)
{
    EXPECT_EQ(SizeText(0), "0 bytes");
    EXPECT_EQ(SizeText(1), "1 byte");
    EXPECT_EQ(SizeText(999), "999 bytes");
    EXPECT_EQ(SizeText(1234), "1.23 kB");
    EXPECT_EQ(SizeText(999'400), "999 kB");
    EXPECT_EQ(SizeText(999'600), "1.00 MB");
    EXPECT_EQ(SizeText(45.6e9), "45.6 GB");
}

TEST(Info, ShowsTheDocumentTheStoresAndWhatReadingTakes)
{
    std::string const scene = KVR_EXAMPLES_DIR "/complete/complete.xml";
    ToolRun const run = RunTool({"info", scene});
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(run.out, HasSubstr("document        12."));
    EXPECT_THAT(run.out, HasSubstr("\n                        2 IBrep\n"));
    EXPECT_THAT(run.out, HasSubstr("\nkernel store    complete.sab: 4.95 kB, 2 entities\n"));
    EXPECT_THAT(run.out, HasSubstr("\nproperties      complete.kvrproperty: 195 bytes, about 2 properties\n"));
    EXPECT_THAT(run.out, HasSubstr("\nto read it      about "));
    json const info = json::parse(RunTool({"info", "--json", scene}).out);
    EXPECT_EQ(info["Document"]["Elements"], 214);
    EXPECT_EQ(info["Elements"]["IPoint"], 5);
    EXPECT_EQ(info["SideFiles"].size(), 9U);
    EXPECT_EQ(info["SideFiles"][1]["Records"], 1);
    EXPECT_EQ(info["SideFiles"][3],
              json({{"Kind", "mesh store"}, {"Name", "complete.geometry"}, {"Bytes", 314}, {"Records", 2}}));
    EXPECT_GT(info["Estimate"]["MemoryBytes"], 4'000'000);
}

TEST(Info, SaysWhyADocumentCannotBeCounted)
{
    TempFolder const folder;
    folder.Write("empty.xml", "");
    folder.Write("cut.xml", "<S><A");
    EXPECT_EQ(RunTool({"info", "/nowhere/s.xml"}).error,
              "kvr: \"/nowhere/s.xml\" cannot be counted: No such file or directory\n");
    EXPECT_THAT(RunTool({"info", folder.NarrowPathOf("empty.xml")}).error, HasSubstr("counted: it is empty\n"));
    ToolRun const run = RunTool({"info", folder.NarrowPathOf("cut.xml")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.error, HasSubstr("counted: it is not a well-formed XML document\n"));
}

TEST(Info, KeepsNothingOfTheDocument)
{
    TempFolder const folder;
    folder.Write("small.xml", "<S/>");
    std::string large = "<S a='" + std::string(20'000'000, 'x') + "'>";
    for (int i = 0; i < 200'000; ++i)
        large += "<IPart ID='a' Label='b'/>\n";
    folder.Write("large.xml", large + "</S>");
    ToolRun const run = RunTool({"info", folder.NarrowPathOf("large.xml")});
    EXPECT_THAT(run.out, HasSubstr("200000 IPart\n"));
    EXPECT_LT(run.peakMemory - RunTool({"info", folder.NarrowPathOf("small.xml")}).peakMemory, 6000);
}

TEST(MaxMemory, RefusesBeforehandWhatTakesMore)
{
    std::string const scene = KVR_EXAMPLES_DIR "/complete/complete.xml";
    TempFolder const folder;
    for (std::vector<std::string> arguments :
         std::vector<std::vector<std::string>>{{"tree"}, {"dump"}, {"views"}, {"notes"}, {"export"}, {"convert"}})
    {
        bool const writes = arguments[0] == "export" || arguments[0] == "convert";
        arguments.push_back(scene);
        if (writes)
            arguments.push_back(folder.NarrowPathOf("out.stl"));
        arguments.insert(arguments.end(), {"--max-memory", "1 MB"});
        ToolRun const refused = RunTool(arguments);
        EXPECT_EQ(refused.status, 1) << arguments[0];
        EXPECT_THAT(refused.error, testing::MatchesRegex("kvr: .*cannot be read: that takes about 4\\.[0-9]* MB of "
                                                         "memory, and --max-memory allows 1\\.00 MB\n"))
            << arguments[0];
        EXPECT_FALSE(std::filesystem::exists(folder.NarrowPathOf("out.stl")));
        arguments.back() = "100MB";
        EXPECT_EQ(RunTool(arguments).status, 0) << arguments[0];
        std::filesystem::remove(folder.NarrowPathOf("out.stl"));
    }
}

TEST(MaxMemory, IsASize)
{
    std::string const scene = KVR_EXAMPLES_DIR "/complete/complete.xml";
    for (char const* const text : {"100000000", "100000kB", "0.1gb", "96 MiB"})
        EXPECT_EQ(RunTool({"views", scene, "--max-memory", text}).status, 0) << text;
    for (char const* const text : {"", "-1", "nan", "1e30", "5 apples", "MB"})
    {
        ToolRun const run = RunTool({"views", scene, "--max-memory", text});
        EXPECT_EQ(run.status, 2) << text;
        EXPECT_THAT(run.error, HasSubstr("is no size, such as 500MB or 2GiB; see kvr --help")) << text;
    }
}

}  // namespace KVR::Test
