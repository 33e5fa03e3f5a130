#include "framework/xml_util/SideFileNotes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

using Names = std::vector<std::string>;

// The notes of a document with that text, or nothing.
std::optional<std::vector<SideFileNote>> NotesIn(std::string const& document)
{
    TempFolder const folder;
    return SideFileNotes::Of(UTF8String(folder.Write("scene.xml", document)));
}

Names NamesIn(std::string const& document)
{
    auto const notes = NotesIn(document);
    if (!notes)
        return {"none"};
    Names names;
    for (SideFileNote const& note : *notes)
        names.push_back(note.name);
    return names;
}

std::optional<FileDigest> DigestOf(std::string const& bytes)
{
    TempFolder const folder;
    return FileDigest::Of(UTF8String(folder.Write("file", bytes)));
}

}  // namespace

TEST(FileDigest, IsTheSizeAndXxh3OfAFile)
{
    // The digest of nothing is known from the algorithm's own tests.
    EXPECT_EQ(DigestOf(""), (FileDigest{0, 0x2d06800538d394c2}));
    std::string const bytes(1'000'000, 'x');
    ASSERT_TRUE(DigestOf(bytes));
    EXPECT_EQ(DigestOf(bytes)->size, bytes.size());
    EXPECT_EQ(DigestOf(bytes), DigestOf(bytes));
    for (std::size_t const place : {std::size_t{0}, std::size_t{262'143}, std::size_t{262'144}, bytes.size() - 1})
    {
        std::string changed = bytes;
        changed[place] = 'y';
        EXPECT_NE(DigestOf(changed)->hash, DigestOf(bytes)->hash) << place;
    }
}

TEST(FileDigest, IsNothingForWhatIsNoRegularFile)
{
    TempFolder const folder;
    EXPECT_FALSE(FileDigest::Of(UTF8String(folder.NarrowPathOf("none"))));
    EXPECT_FALSE(FileDigest::Of(UTF8String(folder.MakeFolder("folder"))));
    EXPECT_FALSE(FileDigest::Of(UTF8String(folder.MakeFifo("fifo"))));
}

TEST(SideFileNotes, ComeBackAsTheyWereWritten)
{
    std::vector<SideFileNote> const notes = {{"a.xml.mesh", {12, 0xfedcba9876543210}},
                                             {"a b?>.<&%41\n", {0, 0}},
                                             {"門.xml.sab", {~std::uint64_t{0}, ~std::uint64_t{0}}},
                                             {"\xff", {1, 2}}};
    std::string const text = SideFileNotes::Text(notes);
    EXPECT_EQ(text.find("?>"), text.size() - 2) << "nothing in a name ends the instruction";
    for (std::string const end : {"", "\n", " \r\n\t"})
    {
        auto const read = NotesIn("<Scene><a/></Scene>\n" + text + end);
        ASSERT_TRUE(read);
        ASSERT_EQ(read->size(), notes.size());
        for (std::size_t i = 0; i < notes.size(); ++i)
        {
            EXPECT_EQ((*read)[i].name, notes[i].name);
            EXPECT_EQ((*read)[i].digest, notes[i].digest);
        }
    }
    EXPECT_EQ(NamesIn("<Scene/>" + SideFileNotes::Text({})), Names());
}

TEST(SideFileNotes, MayBeMoreThanTheEndOfADocumentThatIsLookedAtFirst)
{
    std::vector<SideFileNote> notes;
    for (int i = 0; i < 3000; ++i)
        notes.push_back({"scene.xml.blob" + std::to_string(i), {1, 2}});
    std::string const document = "<Scene>" + std::string(50'000, ' ') + "</Scene>" + SideFileNotes::Text(notes);
    EXPECT_EQ(NamesIn(document).size(), 3000u);
    EXPECT_EQ(NamesIn(document).back(), "scene.xml.blob2999");
}

TEST(SideFileNotes, AreTheLastInstructionAndNothingElse)
{
    std::string const text = SideFileNotes::Text({{"a", {1, 2}}});
    EXPECT_EQ(NamesIn("<Scene/>"), Names{"none"});
    EXPECT_EQ(NamesIn(""), Names{"none"});
    EXPECT_EQ(NamesIn("?>"), Names{"none"});
    EXPECT_EQ(NamesIn("<Scene/>" + text + "<!-- later -->"), Names{"none"});
    EXPECT_EQ(NamesIn("<Scene/>" + text + "<?other x?>"), Names{"none"});
    EXPECT_EQ(NamesIn("<Scene/><?kvr-side-files?>"), Names{"none"});
    EXPECT_EQ(NamesIn("<Scene/><?kvr-side-files2 a 1 2\n?>"), Names{"none"});
    EXPECT_EQ(NamesIn("<Scene>" + text + "</Scene>"), Names{"none"});
    EXPECT_FALSE(SideFileNotes::Of("/nowhere/scene.xml"));
}

TEST(SideFileNotes, LinesWithoutSenseAndNamesThatLeadElsewhereArePassedOver)
{
    std::string const lines =
        "\n  ../up 1 2\n  /etc/passwd 1 2\n  %2e%2E 1 2\n  . 1 2\n  a%00b 1 2\n  %4 1 2\n  %4x 1 2\n  a 1\n  a -1 2\n"
        "  a 1 g\n  a 99999999999999999999 2\n  a 0x1 2\n\n  good 1 2\n  better 3 4 more\n  good 5 6\n";
    EXPECT_EQ(NamesIn("<Scene/><?kvr-side-files" + lines + "?>"), (Names{"good", "better"}));
}

TEST(SideFileNotes, CutAtAnyPlaceDoNoHarm)
{
    std::string const whole = "<Scene/>" + SideFileNotes::Text({{"a%?b", {1, 2}}, {"c", {3, 4}}});
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(NamesIn(whole.substr(0, size)), Names{"none"}) << size;
    EXPECT_EQ(NamesIn(whole), (Names{"a%?b", "c"}));
}

}  // namespace KVR::Test
