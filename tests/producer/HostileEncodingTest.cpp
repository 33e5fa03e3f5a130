// Scenes in other encodings, and in none.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/support/FullScene.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using namespace std::string_view_literals;

// A letter of Latin-1, one of a script of its own, and one outside the basic plane.
constexpr char32_t kLabel[] = U"Gr\u00F6\u00DFe \u6A21 \U0001F600";
constexpr char const* kLabelUtf8 =
    "Gr\xC3\xB6\xC3\x9F"
    "e \xE6\xA8\xA1 \xF0\x9F\x98\x80";

std::u32string Document(std::u32string const& declaration, std::u32string const& label)
{
    return declaration + U"<S><IPart ID=\"p\" Label=\"" + label + U"\"/></S>";
}

std::string Utf8(std::u32string_view text)
{
    std::wstring wide(text.begin(), text.end());
    return std::string(UTF8String(UTF16String(std::move(wide))).View());
}

std::string Utf16(std::u32string_view text, bool bigEndian, bool withMark = true)
{
    std::string bytes;
    auto const unit = [&](unsigned value)
    {
        char const high = static_cast<char>(static_cast<unsigned char>(value >> 8U));
        char const low = static_cast<char>(static_cast<unsigned char>(value));
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    };
    if (withMark)
        unit(0xFEFF);
    for (char32_t const c : text)
    {
        if (c < 0x10000)
        {
            unit(c);
            continue;
        }
        unit(0xD800U + ((c - 0x10000U) >> 10U));
        unit(0xDC00U + ((c - 0x10000U) & 0x3FFU));
    }
    return bytes;
}

// The label of the part, or "refused".
std::string LabelOf(std::string const& bytes)
{
    TestScene scene(bytes);
    if (!Opens(scene))
    {
        EXPECT_FALSE(scene.Has("p"));
        return "refused";
    }
    return Text(scene.Get<IPart>("p").Label());
}

}  // namespace

TEST(HostileEncoding, Utf8IsTheDefaultWithAMarkAndWithout)
{
    std::string const bytes = Utf8(Document(U"", kLabel));
    EXPECT_EQ(LabelOf(bytes), kLabelUtf8);
    EXPECT_EQ(LabelOf("\xEF\xBB\xBF" + bytes), kLabelUtf8);
    EXPECT_EQ(LabelOf(Utf8(Document(U"<?xml version=\"1.0\" encoding=\"UTF-8\"?>", kLabel))), kLabelUtf8);
    EXPECT_EQ(LabelOf("\xEF\xBB\xBF" + Utf8(Document(U"<?xml version=\"1.0\" encoding=\"utf-8\"?>", kLabel))),
              kLabelUtf8);
}

TEST(HostileEncoding, Utf16IsReadBothWays)
{
    for (bool const bigEndian : {false, true})
    {
        EXPECT_EQ(LabelOf(Utf16(Document(U"", kLabel), bigEndian)), kLabelUtf8);
        EXPECT_EQ(LabelOf(Utf16(Document(U"<?xml version=\"1.0\" encoding=\"UTF-16\"?>", kLabel), bigEndian)),
                  kLabelUtf8);
        EXPECT_EQ(LabelOf(Utf16(Document(U"<?xml version=\"1.0\"?>", kLabel), bigEndian, false)), kLabelUtf8);
    }
}

TEST(HostileEncoding, Latin1IsReadWhenDeclared)
{
    EXPECT_EQ(LabelOf("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><S><IPart ID=\"p\" Label=\"Gr\xF6\xDF"
                      "e\"/></S>"),
              "Gr\xC3\xB6\xC3\x9F"
              "e");
    EXPECT_EQ(LabelOf("<S><IPart ID=\"p\" Label=\"Gr\xF6\xDF"
                      "e\"/></S>"),
              "refused")
        << "it is no UTF-8";
}

TEST(HostileEncoding, OfAWholeSceneChangesNothing)
{
    TestScene plain(FullScene());
    WriteSideFiles(plain);
    plain.Begin();
    std::string const expected = WalkScene(plain.Producer(), FullSceneIds()).text;
    std::string const text = FullScene();
    std::u32string const wide(text.begin(), text.end());
    for (std::string const& bytes : {"\xEF\xBB\xBF" + text, Utf16(wide, false), Utf16(wide, true)})
    {
        TestScene scene(bytes);
        WriteSideFiles(scene);
        scene.Begin();
        EXPECT_EQ(WalkScene(scene.Producer(), FullSceneIds()).text, expected);
    }
}

TEST(HostileEncoding, BytesThatAreNoUtf8AreRefused)
{
    for (char const* const bytes :
         {"\x80", "\xBF", "\xC3", "\xC3(", "\xC0\xAF", "\xE0\x80\xAF", "\xE6\xA8", "\xED\xA0\x80", "\xED\xBF\xBF",
          "\xF0\x80\x80\xAF", "\xF0\x9F\x98", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xFE", "\xFF"})
    {
        EXPECT_EQ(LabelOf(std::string("<S><IPart ID=\"p\" Label=\"") + bytes + "\"/></S>"), "refused");
        EXPECT_EQ(LabelOf(std::string("<S><IPart ID=\"p\"/>") + bytes + "</S>"), "refused");
        EXPECT_EQ(LabelOf(std::string("<S><IPart ID=\"p\"/></S>") + bytes + " <!---->"), "refused");
    }
}

TEST(HostileEncoding, ACharacterCutShortByTheEndOfTheFileIsPassedOverBehindTheRoot)
{
    for (char const* const bytes : {"\xC3", "\xE6\xA8", "\xF0\x9F\x98"})
        EXPECT_EQ(LabelOf(std::string("<S><IPart ID=\"p\" Label=\"label\"/></S>") + bytes), "label");
    EXPECT_EQ(LabelOf(Utf16(Document(U"", kLabel), false) + "x"), kLabelUtf8) << "half of a character of UTF-16";
}

TEST(HostileEncoding, CharactersThatXmlForbidsAreRefused)
{
    for (std::string const& text : {std::string("\0"sv), std::string("\x01"), std::string("\x1F"),
                                    std::string("\xEF\xBF\xBE"), std::string("&#0;"), std::string("&#1;"),
                                    std::string("&#xD800;"), std::string("&#xFFFF;"), std::string("&#x110000;")})
        EXPECT_EQ(LabelOf("<S><IPart ID=\"p\" Label=\"" + text + "\"/></S>"), "refused");
}

TEST(HostileEncoding, ADeclarationThatCannotBeKeptIsRefused)
{
    EXPECT_EQ(LabelOf("<?xml version=\"1.0\" encoding=\"unheard-of\"?><S><IPart ID=\"p\"/></S>"), "refused");
    EXPECT_EQ(LabelOf("<?xml version=\"1.0\" encoding=\"US-ASCII\"?><S><IPart ID=\"p\" Label=\"\xC3\xB6\"/></S>"),
              "refused");
}

TEST(HostileEncoding, ADeclarationOfUtf16InAFileThatIsPlainlyNoneIsPassedOver)
{
    std::string const bytes = Utf8(Document(U"<?xml version=\"1.0\" encoding=\"UTF-16\"?>", kLabel));
    EXPECT_EQ(LabelOf(bytes), kLabelUtf8);
    EXPECT_EQ(LabelOf("\xEF\xBB\xBF" + bytes), kLabelUtf8);
}

TEST(HostileEncoding, Utf16ThatIsCutOrHasLoneSurrogatesDoesNoHarm)
{
    std::string const good = Utf16(Document(U"", kLabel), false);
    EXPECT_EQ(LabelOf(good.substr(0, good.size() - 1)), "refused");
    for (char32_t const lone : {char32_t{0xD83D}, char32_t{0xDE00}})
    {
        std::string const bytes = Utf16(Document(U"", std::u32string(U"a") + lone + U"b"), false);
        EXPECT_EQ(LabelOf(bytes), "refused");
    }
}

TEST(HostileEncoding, AMarkAloneOrTwoOfThemAreRefused)
{
    for (std::string const& bytes :
         {std::string("\xEF\xBB\xBF"), std::string("\xFF\xFE"), std::string("\xFE\xFF"), std::string("\xEF\xBB"),
          std::string("\xFF\xFE\0\0"sv), std::string(1000, '\0'), std::string(1000, '\xFF'),
          "\xEF\xBB\xBF\xEF\xBB\xBF" + Utf8(Document(U"", kLabel))})
        EXPECT_EQ(LabelOf(bytes), "refused");
}

}  // namespace KVR::Test
