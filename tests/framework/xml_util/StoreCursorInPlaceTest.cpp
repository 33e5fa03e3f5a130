// What a cursor looks at where it stands in its buffer: texts, and runs of indices.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "framework/api/IOUtil.h"
#include "framework/xml_util/StoreCursor.h"
#include "tests/support/ByteBuilder.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

TEST(StoreCursor, ATextMayBeLookedAtWhereItStands)
{
    std::string large(StoreCursor::kWholeStore + 100, '\0');
    for (std::size_t i = 0; i < large.size(); ++i)
        large[i] = static_cast<char>(i * 7 + i / 1000);
    TempFolder const folder;
    UTF16String const path = folder.Write(
        "s", ByteBuilder().String("text").String("").String(large).String("behind").U64(4).Raw("abc").Bytes());
    for (std::size_t const readAhead : {StoreCursor::kFieldsOnly, std::size_t{64}, StoreCursor::kWholeStore})
    {
        FilePtr const file(UTF8String(path), "rb");
        StoreCursor cursor(file, IOUtil::IsBigEndian(), readAhead);
        std::string_view text = "before";
        EXPECT_TRUE(cursor.Read(text));
        EXPECT_EQ(text, "text");
        EXPECT_TRUE(cursor.Read(text));
        EXPECT_EQ(text, "");
        EXPECT_TRUE(cursor.Read(text));
        EXPECT_TRUE(text == large);
        EXPECT_TRUE(cursor.Read(text));
        EXPECT_EQ(text, "behind");
        text = "before";
        EXPECT_FALSE(cursor.Read(text)) << "a byte is missing";
        EXPECT_EQ(text, "before");
        EXPECT_TRUE(cursor.HasEnded());
        EXPECT_FALSE(cursor.Read(text)) << "so is the length";
        EXPECT_EQ(text, "before");
    }
}

TEST(StoreCursor, ARunBreaksAtAnyPlace)
{
    constexpr std::uint64_t kFirst = 1000;
    constexpr std::size_t kLengths[] = {2, 9, 40, 127, 128, 129, 300};
    ByteBuilder bytes;
    for (std::size_t const length : kLengths)
    {
        for (std::size_t place = 1; place < length; ++place)
        {
            // By the lowest bit or the highest.
            std::uint64_t const change = std::uint64_t{1} << (place % 2 * 63);
            for (std::size_t i = 0; i < length; ++i)
                bytes.U64((kFirst + i) ^ (i == place ? change : 0));
        }
    }
    TempFolder const folder;
    FilePtr const file(UTF8String(folder.Write("s", bytes.Bytes())), "rb");
    StoreCursor cursor(file, IOUtil::IsBigEndian(), StoreCursor::kWholeStore);
    for (std::size_t const length : kLengths)
    {
        for (std::size_t place = 1; place < length; ++place)
        {
            unsigned long long first = 0;
            ASSERT_EQ(cursor.ReadRun(first, length), place) << "of " << length;
            ASSERT_EQ(first, kFirst);
            std::vector<std::int32_t> rest(length - place);
            ASSERT_EQ(cursor.ReadIndices(rest.data(), rest.size()), rest.size());
        }
    }
    EXPECT_TRUE(cursor.HasEnded());
}

}  // namespace

}  // namespace KVR::Test
