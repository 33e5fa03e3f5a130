#include "framework/xml_util/XStr.h"

#include <gtest/gtest.h>

#include <string_view>

namespace
{

using KVR::XStr;

std::u16string_view TextOf(XStr const& text)
{
    return text.unicodeForm();
}

TEST(XStr, GivesNarrowTextAsDocumentText)
{
    EXPECT_EQ(TextOf(XStr("IPart")), u"IPart");
}

TEST(XStr, TakesNullForTheEmptyText)
{
    EXPECT_EQ(TextOf(XStr(nullptr)), u"");
    EXPECT_EQ(TextOf(XStr("")), u"");
}

TEST(XStr, ReadsItsTextAsUtf8)
{
    EXPECT_EQ(TextOf(XStr("Räder \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80")), u"R\u00E4der \u65E5\u672C \U0001F600");
}

TEST(XStr, GivesAReplacementCharacterForBytesThatAreNotUtf8)
{
    EXPECT_EQ(TextOf(XStr("a\xFFz")), u"a\uFFFDz");
}

TEST(XStr, KeepsItsTextWhereItIsAsLongAsItLives)
{
    XStr const text("kept");
    XMLCh const* const form = text.unicodeForm();
    XStr const other("another");
    EXPECT_EQ(text.unicodeForm(), form);
    EXPECT_EQ(std::u16string_view(form), u"kept");
}

}  // namespace
