#include "framework/api/UTF16String.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "framework/api/UTF8String.h"

namespace
{

using namespace KVR;

static_assert(std::is_nothrow_default_constructible_v<UTF16String>);
static_assert(std::is_nothrow_move_constructible_v<UTF16String>);
static_assert(std::is_nothrow_move_assignable_v<UTF16String>);
static_assert(std::has_virtual_destructor_v<UTF16String>);
static_assert(sizeof(UTF16String) <= sizeof(std::wstring) + sizeof(void*), "one virtual table beside the text");
static_assert(std::is_convertible_v<wchar_t const*, UTF16String>);
static_assert(std::is_convertible_v<char16_t const*, UTF16String>);
static_assert(!std::is_convertible_v<UTF8String, UTF16String>, "a change of form is written out");
static_assert(std::is_constructible_v<UTF16String, UTF8String const&>);
static_assert(!std::is_convertible_v<char const*, UTF16String>);
static_assert(!std::is_convertible_v<std::wstring, UTF16String>);
static_assert(!std::is_convertible_v<UTF16String, wchar_t const*>);
static_assert(!std::is_convertible_v<UTF16String, std::wstring>);
static_assert(!std::is_convertible_v<UTF16String, bool>);
static_assert(!std::is_assignable_v<UTF16String&, UTF8String const&>);

TEST(UTF16String, IsEmptyUntilSet)
{
    UTF16String const text;
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_STREQ(text.Value(), L"");
    EXPECT_TRUE(text.View().empty());
}

TEST(UTF16String, ANullPointerCountsAsTheEmptyText)
{
    wchar_t const* const noWide = nullptr;
    char16_t const* const noUtf16 = nullptr;
    EXPECT_TRUE(UTF16String(noWide).IsEmpty());
    EXPECT_TRUE(UTF16String(noUtf16).IsEmpty());
    EXPECT_EQ(UTF16String().Compare(nullptr), 0);
    EXPECT_GT(UTF16String(L"a").Compare(nullptr), 0);
}

TEST(UTF16String, SurrogatePairsOfUtf16AreOneCharacter)
{
    UTF16String const text(u"\U0001F529");
    EXPECT_EQ(text, UTF16String(L"\U0001F529"));
    EXPECT_EQ(UTF8String(text), UTF8String("\xF0\x9F\x94\xA9"));
}

TEST(UTF16String, ALoneSurrogateBecomesTheReplacementCharacter)
{
    EXPECT_EQ(UTF16String(u"a\xD83D"), UTF16String(L"a\xFFFD"));
    EXPECT_EQ(UTF16String(u"\xDE00z"), UTF16String(L"\xFFFDz"));
}

TEST(UTF16String, BytesOutsideUtf8BecomeTheReplacementCharacter)
{
    EXPECT_EQ(UTF16String(UTF8String("B\xE4r")), UTF16String(L"B\xFFFDr"));
}

TEST(UTF16String, ComparesByTheValuesOfItsCodeUnits)
{
    UTF16String const text(L"xml");
    EXPECT_EQ(text.Compare(L"xml"), 0);
    EXPECT_LT(text.Compare(L"xmm"), 0);
    EXPECT_GT(text.Compare(L"xm"), 0);
    EXPECT_GT(UTF16String(L"\xFFFD").Compare(L"z"), 0);
}

TEST(UTF16String, OrderIsStrictAndTotal)
{
    std::vector<UTF16String> texts(1);
    for (int unit : {0, 1, 0x41, 0x7F, 0x80, 0xFF, 0x100, 0x7FFF, 0x8000, 0xD7FF, 0xE000, 0xFFFF})
    {
        texts.emplace_back(std::wstring(1, static_cast<wchar_t>(unit)));
        texts.emplace_back(std::wstring{static_cast<wchar_t>(unit), L'\0'});
        texts.emplace_back(std::wstring{static_cast<wchar_t>(unit), L'\xFFFF'});
    }
    for (std::size_t a = 0; a < texts.size(); ++a)
    {
        for (std::size_t b = 0; b < texts.size(); ++b)
        {
            ASSERT_EQ(texts[a] < texts[b], a < b) << a << " " << b;
            ASSERT_EQ(texts[a] == texts[b], a == b) << a << " " << b;
        }
    }
}

TEST(UTF16String, KeysAnOrderedMap)
{
    std::map<UTF16String, int> map;
    map[L"ISO Dash"] = 1;
    map[L"Continuous"] = 0;
    map[L"ISO Dash"] = 2;
    ASSERT_EQ(map.size(), 2U);
    EXPECT_EQ(map.begin()->first, UTF16String(L"Continuous"));
    EXPECT_EQ(map[L"ISO Dash"], 2);
}

TEST(UTF16String, ToLowerChangesTheLettersAToZAlone)
{
    UTF16String text(L"[@AZ`az{\xC4\x391\x130.XML");
    UTF16String& answered = text.ToLower();
    EXPECT_EQ(&answered, &text);
    EXPECT_EQ(text, UTF16String(L"[@az`az{\xC4\x391\x130.xml"));
    EXPECT_TRUE(UTF16String().ToLower().IsEmpty());
}

TEST(UTF16String, AMovedTextTakesItsStorageAlong)
{
    UTF16String from(std::wstring(1000, L'x'));
    wchar_t const* const storage = from.Value();
    UTF16String to(std::move(from));
    EXPECT_EQ(to.Value(), storage);
    UTF16String assigned(L"y");
    assigned = std::move(to);
    EXPECT_EQ(assigned.Value(), storage);
}

TEST(UTF16String, IsAssignedFromItself)
{
    UTF16String text(L"label");
    UTF16String& same = text;
    text = same;
    EXPECT_EQ(text, UTF16String(L"label"));
}

}  // namespace
