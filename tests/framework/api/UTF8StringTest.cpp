#include "framework/api/UTF8String.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>
#include <type_traits>
#include <unordered_set>
#include <utility>
#include <vector>

#include "framework/api/UTF16String.h"

namespace
{

using namespace KVR;

static_assert(std::is_nothrow_default_constructible_v<UTF8String>);
static_assert(std::is_nothrow_move_constructible_v<UTF8String>);
static_assert(std::is_nothrow_move_assignable_v<UTF8String>);
static_assert(std::has_virtual_destructor_v<UTF8String>);
static_assert(sizeof(UTF8String) <= sizeof(std::string) + sizeof(void*), "one virtual table beside the text");
static_assert(std::is_convertible_v<char const*, UTF8String>);
static_assert(!std::is_convertible_v<UTF16String, UTF8String>, "a change of form is written out");
static_assert(std::is_constructible_v<UTF8String, UTF16String const&>);
static_assert(!std::is_convertible_v<wchar_t const*, UTF8String>);
static_assert(!std::is_convertible_v<std::string, UTF8String>);
static_assert(!std::is_convertible_v<std::string_view, UTF8String>);
static_assert(!std::is_convertible_v<UTF8String, char const*>);
static_assert(!std::is_convertible_v<UTF8String, std::string>);
static_assert(!std::is_convertible_v<UTF8String, bool>);
static_assert(!std::is_assignable_v<UTF8String&, UTF16String const&>);

TEST(UTF8String, IsEmptyUntilSet)
{
    UTF8String const text;
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.Size(), 0U);
    EXPECT_STREQ(text.Value(), "");
}

TEST(UTF8String, ANullPointerCountsAsTheEmptyText)
{
    char const* const none = nullptr;
    EXPECT_TRUE(UTF8String(none).IsEmpty());
    UTF8String text("a");
    text = none;
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.Compare(nullptr), 0);
    EXPECT_GT(UTF8String("a").Compare(nullptr), 0);
}

TEST(UTF8String, KeepsBytesThatAreNoText)
{
    std::string const bytes("\xFF\0\x80", 3);
    EXPECT_EQ(UTF8String(bytes).View(), bytes);
    EXPECT_EQ(UTF8String(bytes).Size(), 3U);
}

TEST(UTF8String, IsAssignedFromCharactersAndFromItself)
{
    UTF8String text;
    text = "first";
    EXPECT_EQ(text, UTF8String("first"));
    UTF8String const other("second");
    text = other;
    EXPECT_EQ(text, other);
    UTF8String& same = text;
    text = same;
    EXPECT_EQ(text, other);
}

TEST(UTF8String, AMovedTextTakesItsStorageAlong)
{
    UTF8String from(std::string(1000, 'x'));
    char const* const storage = from.Value();
    UTF8String to(std::move(from));
    EXPECT_EQ(to.Value(), storage);
    UTF8String assigned("y");
    assigned = std::move(to);
    EXPECT_EQ(assigned.Value(), storage);
    EXPECT_EQ(assigned.Size(), 1000U);
}

TEST(UTF8String, AnIdSurvivesTheWayThroughWideText)
{
    UTF8String const id("Bolzen-\xC3\xA4-\xE2\x82\xAC-\xF0\x9F\x94\xA9");
    EXPECT_EQ(UTF8String(UTF16String(id)), id);
}

TEST(UTF8String, ComparesByTheValuesOfItsBytes)
{
    EXPECT_EQ(UTF8String("abc").Compare("abc"), 0);
    EXPECT_LT(UTF8String("abc").Compare("abd"), 0);
    EXPECT_GT(UTF8String("abc").Compare("ab"), 0);
    EXPECT_GT(UTF8String("\xC3\xA4").Compare("z"), 0);
    EXPECT_GT(UTF8String("\x80").Compare("\x7F"), 0);
}

TEST(UTF8String, OrderIsStrictAndTotalOnAllBytes)
{
    std::vector<UTF8String> texts(1);
    for (int first = 0; first < 256; ++first)
    {
        texts.emplace_back(std::string(1, static_cast<char>(first)));
        texts.emplace_back(std::string{static_cast<char>(first), '\0'});
        texts.emplace_back(std::string{static_cast<char>(first), static_cast<char>(0x80)});
    }
    // Written in the order of unsigned bytes, so that the place in the list tells the answer.
    for (std::size_t a = 0; a < texts.size(); ++a)
    {
        for (std::size_t b = 0; b < texts.size(); ++b)
        {
            ASSERT_EQ(texts[a] < texts[b], a < b) << a << " " << b;
            ASSERT_EQ(texts[a] == texts[b], a == b) << a << " " << b;
        }
    }
}

TEST(UTF8String, KeysAnOrderedMapAndAHashedSet)
{
    std::map<UTF8String, int> map;
    std::unordered_set<UTF8String> set;
    for (char const* const key : {"b", "a", "\xC3\xA4", "b", ""})
    {
        ++map[key];
        set.insert(key);
    }
    EXPECT_EQ(map.size(), 4U);
    EXPECT_EQ(set.size(), 4U);
    EXPECT_EQ(map["b"], 2);
    EXPECT_EQ(map.rbegin()->first, UTF8String("\xC3\xA4"));
}

TEST(UTF8String, FindGivesTheFirstPlaceAtOrBehindTheStart)
{
    UTF8String const text("[a][b]");
    EXPECT_EQ(text.Find('['), 0);
    EXPECT_EQ(text.Find('[', 0), 0);
    EXPECT_EQ(text.Find('[', 1), 3);
    EXPECT_EQ(text.Find(']', 5), 5);
}

TEST(UTF8String, FindOfWhatTheTextLacksIsMinusOne)
{
    UTF8String const text("abc");
    EXPECT_EQ(text.Find('x', 0), -1);
    EXPECT_EQ(text.Find('a', 1), -1);
    EXPECT_EQ(text.Find('c', 3), -1);
    EXPECT_EQ(text.Find('c', 4), -1);
    EXPECT_EQ(text.Find('c', std::numeric_limits<unsigned long long>::max()), -1);
    EXPECT_EQ(text.Find('\0', 0), -1);
    EXPECT_EQ(UTF8String().Find('a', 0), -1);
}

TEST(UTF8String, SubstrTakesWhatIsThere)
{
    UTF8String const text("abcdef");
    EXPECT_EQ(text.Substr(0, 6), text);
    EXPECT_EQ(text.Substr(2, 3), UTF8String("cde"));
    EXPECT_EQ(text.Substr(4, 100), UTF8String("ef"));
    EXPECT_EQ(text.Substr(5, std::numeric_limits<long>::max()), UTF8String("f"));
    EXPECT_EQ(text, UTF8String("abcdef"));
}

TEST(UTF8String, SubstrOfNothingIsEmpty)
{
    UTF8String const text("abc");
    EXPECT_TRUE(text.Substr(0, 0).IsEmpty());
    EXPECT_TRUE(text.Substr(0, -1).IsEmpty());
    EXPECT_TRUE(text.Substr(0, std::numeric_limits<long>::min()).IsEmpty());
    EXPECT_TRUE(text.Substr(3, 1).IsEmpty());
    EXPECT_TRUE(text.Substr(std::numeric_limits<unsigned long long>::max(), 1).IsEmpty());
    EXPECT_TRUE(UTF8String().Substr(0, 1).IsEmpty());
}

TEST(UTF8String, InsertChangesTheTextAndAnswersItself)
{
    UTF8String text("42");
    UTF8String& answered = text.Insert(0, "P:");
    EXPECT_EQ(&answered, &text);
    EXPECT_EQ(text, UTF8String("P:42"));
    EXPECT_EQ(text.Insert(3, "-"), UTF8String("P:4-2"));
    EXPECT_EQ(text.Insert(5, "!"), UTF8String("P:4-2!"));
    EXPECT_EQ(text.Insert(2, ""), UTF8String("P:4-2!"));
}

TEST(UTF8String, InsertBeyondTheEndAppends)
{
    UTF8String text("a");
    text.Insert(std::numeric_limits<unsigned long long>::max(), "b").Insert(3, "c");
    EXPECT_EQ(text, UTF8String("abc"));
}

TEST(UTF8String, InsertTakesItself)
{
    UTF8String text("abc");
    text.Insert(1, text);
    EXPECT_EQ(text, UTF8String("aabcbc"));
}

TEST(UTF8String, PlusGivesANewText)
{
    UTF8String const a("a");
    UTF8String const b("b");
    EXPECT_EQ(a + b, UTF8String("ab"));
    EXPECT_EQ(a + UTF8String(), a);
    EXPECT_EQ(UTF8String() + a + b + a, UTF8String("aba"));
    EXPECT_EQ(a, UTF8String("a"));
}

TEST(UTF8String, TrimTakesOneCharacterFromBothEnds)
{
    auto const trimmed = [](char const* text) { return UTF8String(text).Trim(' '); };
    EXPECT_EQ(trimmed("  a b  "), UTF8String("a b"));
    EXPECT_EQ(trimmed("a"), UTF8String("a"));
    EXPECT_EQ(trimmed(" a"), UTF8String("a"));
    EXPECT_EQ(trimmed("a "), UTF8String("a"));
    EXPECT_EQ(trimmed("\t a\n "), UTF8String("\t a\n"));
    EXPECT_EQ(trimmed(" "), UTF8String());
    EXPECT_EQ(trimmed("    "), UTF8String());
    EXPECT_EQ(trimmed(""), UTF8String());
    EXPECT_EQ(UTF8String("\"q\"").Trim('"'), UTF8String("q"));
}

}  // namespace
