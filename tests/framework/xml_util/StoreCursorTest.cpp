#include "framework/xml_util/StoreCursor.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "framework/api/IOUtil.h"
#include "framework/xml_util/BinaryReadWriteUtil.h"
#include "tests/support/ByteBuilder.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

constexpr bool kSwapped = true;

// A store in a file, and a cursor over it.
class OpenStore
{
public:
    explicit OpenStore(std::string const& bytes, std::size_t readAhead = StoreCursor::kWholeStore,
                       bool isSwapped = false)
        : m_file(UTF8String(m_folder.Write("s", bytes)), "rb"),
          cursor(m_file, IOUtil::IsBigEndian() != isSwapped, readAhead)
    {
    }
    std::FILE* File() { return m_file; }
    std::string Path() const { return m_folder.NarrowPathOf("s"); }

private:
    TempFolder m_folder;
    FilePtr m_file;

public:
    StoreCursor cursor;
};

// Bytes that are never alike for long.
std::string Noise(std::size_t size)
{
    std::string bytes(size, '\0');
    std::uint64_t state = 88172645463325252ULL;
    for (char& byte : bytes)
    {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        byte = static_cast<char>(state);
    }
    return bytes;
}

constexpr std::size_t kReadAheads[] = {StoreCursor::kFieldsOnly, 64, 1000, StoreCursor::kWholeStore};

TEST(StoreCursor, FieldsComeInFileOrderAndAreCounted)
{
    std::string const bytes =
        ByteBuilder().U64(7).U32(8).F64(0.5).Byte(2).Byte(0).String("text").F64(1).F64(2).F64(3).Bytes();
    for (std::size_t const readAhead : kReadAheads)
    {
        OpenStore store(bytes, readAhead);
        StoreCursor& cursor = store.cursor;
        EXPECT_EQ(cursor.Remaining(), bytes.size());
        unsigned long long number = 0;
        unsigned int small = 0;
        double real = 0;
        bool flag = false;
        UTF8String text;
        double x = 0;
        double y = 0;
        double z = 0;
        EXPECT_TRUE(cursor.Read(number));
        EXPECT_EQ(number, 7U);
        EXPECT_TRUE(cursor.Read(small));
        EXPECT_EQ(small, 8U);
        EXPECT_TRUE(cursor.Read(real));
        EXPECT_EQ(real, 0.5);
        EXPECT_EQ(cursor.Position(), 20U);
        EXPECT_TRUE(cursor.Read(flag));
        EXPECT_TRUE(flag);
        EXPECT_TRUE(cursor.Read(flag));
        EXPECT_FALSE(flag);
        EXPECT_TRUE(cursor.Read(text));
        EXPECT_EQ(text, UTF8String("text"));
        EXPECT_FALSE(cursor.HasEnded());
        EXPECT_TRUE(cursor.Read(x, y, z));
        EXPECT_EQ(z, 3.0);
        EXPECT_TRUE(cursor.HasEnded());
        EXPECT_FALSE(cursor.Read(flag));
        EXPECT_EQ(cursor.Position(), bytes.size());
    }
}

TEST(StoreCursor, AFieldThatIsCutShortConsumesTheRestAndLeavesItsOutputAlone)
{
    for (std::size_t const readAhead : kReadAheads)
    {
        OpenStore number(std::string(7, 'x'), readAhead);
        unsigned long long value = 42;
        EXPECT_FALSE(number.cursor.Read(value));
        EXPECT_EQ(value, 42U);
        EXPECT_TRUE(number.cursor.HasEnded());
        OpenStore text(ByteBuilder().U64(100).Raw("short").Bytes(), readAhead);
        UTF8String read("before");
        EXPECT_FALSE(text.cursor.Read(read));
        EXPECT_EQ(read, UTF8String("before"));
        EXPECT_TRUE(text.cursor.HasEnded());
        OpenStore triple(ByteBuilder().F64(1).Raw("1234").Bytes(), readAhead);
        double x = 9;
        double y = 9;
        double z = 9;
        EXPECT_FALSE(triple.cursor.Read(x, y, z));
        EXPECT_EQ(x, 1.0);
        EXPECT_EQ(y, 9.0);
        EXPECT_EQ(z, 9.0);
    }
}

TEST(StoreCursor, ListsAreReadAsIfValueByValue)
{
    constexpr std::size_t kBlock = StoreCursor::kWholeStore / sizeof(double);
    // Behind an odd number of bytes, so that values lie across the ends of blocks; the last file ends within a value.
    for (std::size_t const count : {std::size_t{0}, std::size_t{1}, std::size_t{9}, kBlock - 1, kBlock, kBlock + 1,
                                    2 * kBlock, 2 * kBlock + 1, 5 * kBlock + 3})
    {
        for (std::size_t const cut : {0, 1, 12})
        {
            std::string bytes = Noise(3 + 8 * count);
            bytes.resize(bytes.size() - std::min(cut, 8 * count));
            std::size_t const held = (bytes.size() - 3) / 8;
            for (bool const isSwapped : {false, true})
            {
                for (std::size_t const readAhead : kReadAheads)
                {
                    OpenStore reals(bytes, readAhead, isSwapped);
                    OpenStore indices(bytes, readAhead, isSwapped);
                    OpenStore one(bytes);
                    std::fseek(one.File(), 3, SEEK_SET);
                    bool skipped = false;
                    for (int i = 0; i < 3; ++i)
                    {
                        reals.cursor.Read(skipped);
                        indices.cursor.Read(skipped);
                    }
                    std::vector<double> doubles(count, 0.0);
                    std::vector<std::int32_t> words(count, 0);
                    ASSERT_EQ(reals.cursor.ReadDoubles(doubles.data(), count), held);
                    ASSERT_EQ(indices.cursor.ReadIndices(words.data(), count), held);
                    for (std::size_t i = 0; i < held; ++i)
                    {
                        unsigned long long expected = 0;
                        ASSERT_EQ(
                            BinaryReadWriteUtil::BinaryRead(one.File(), expected, IOUtil::IsBigEndian() != isSwapped),
                            1);
                        ASSERT_EQ(std::bit_cast<std::uint64_t>(doubles[i]), expected) << count << " at " << i;
                        ASSERT_EQ(words[i], static_cast<std::int32_t>(expected)) << count << " at " << i;
                    }
                    ASSERT_EQ(reals.cursor.HasEnded(), true) << count;
                    ASSERT_EQ(indices.cursor.HasEnded(), true) << count;
                }
            }
        }
    }
}

TEST(StoreCursor, ARunIsReadAsFarAsItGoes)
{
    constexpr std::size_t kBlock = StoreCursor::kWholeStore / sizeof(std::uint64_t);
    for (std::size_t const length : {std::size_t{1}, std::size_t{70}, kBlock, 2 * kBlock + 5})
    {
        ByteBuilder bytes = ByteBuilder().Byte(0);
        for (std::size_t i = 0; i < length; ++i)
            bytes.U64(~std::uint64_t{0} - 3 + i);
        bytes.U64(7).Byte(8);
        for (std::size_t const readAhead : kReadAheads)
        {
            OpenStore store(bytes.Bytes(), readAhead);
            bool skipped = false;
            store.cursor.Read(skipped);
            unsigned long long first = 0;
            EXPECT_EQ(store.cursor.ReadRun(first, 0), 0U);
            EXPECT_EQ(first, 0U);
            EXPECT_EQ(store.cursor.ReadRun(first, length + 1), length) << length << " by " << readAhead;
            EXPECT_EQ(first, ~std::uint64_t{0} - 3);
            unsigned long long behind = 0;
            EXPECT_TRUE(store.cursor.Read(behind));
            EXPECT_EQ(behind, 7U);
            EXPECT_EQ(store.cursor.ReadRun(behind, 1), 0U) << "a byte is left";
            EXPECT_EQ(behind, 7U);
            EXPECT_EQ(store.cursor.Remaining(), 1U);
        }
        OpenStore swapped(bytes.Bytes(), StoreCursor::kWholeStore, kSwapped);
        unsigned long long first = 0;
        EXPECT_EQ(swapped.cursor.ReadRun(first, length), 0U);
    }
}

TEST(StoreCursor, OnAMachineOfTheOtherByteOrderFieldsAreTurnedRound)
{
    OpenStore store(std::string("\0\0\0\0\0\0\1\2\0\0\1\2\x3f\xe0\0\0\0\0\0\0\5", 21), StoreCursor::kWholeStore,
                    kSwapped);
    unsigned long long number = 0;
    unsigned int small = 0;
    double real = 0;
    bool flag = false;
    EXPECT_TRUE(store.cursor.Read(number));
    EXPECT_EQ(number, 258U);
    EXPECT_TRUE(store.cursor.Read(small));
    EXPECT_EQ(small, 258U);
    EXPECT_TRUE(store.cursor.Read(real));
    EXPECT_EQ(real, 0.5);
    EXPECT_EQ(store.cursor.Peek(1), nullptr) << "fields are to be read one by one";
    EXPECT_TRUE(store.cursor.Read(flag));
    EXPECT_TRUE(flag);
}

TEST(StoreCursor, ATextWhoseLengthIsNotThereIsNone)
{
    OpenStore store("1234567");
    UTF8String text("before");
    EXPECT_FALSE(store.cursor.Read(text));
    EXPECT_EQ(text, UTF8String("before"));
    EXPECT_TRUE(store.cursor.HasEnded());
}

TEST(StoreCursor, WhatCannotBeSoughtInIsEmpty)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ASSERT_EQ(write(ends[1], "12345678", 8), 8);
    close(ends[1]);
    std::FILE* const file = fdopen(ends[0], "rb");
    {
        StoreCursor cursor(file, IOUtil::IsBigEndian(), StoreCursor::kWholeStore);
        EXPECT_TRUE(cursor.HasEnded());
        EXPECT_EQ(cursor.Position(), 0U);
        EXPECT_EQ(cursor.Remaining(), 0U);
        unsigned long long value = 7;
        EXPECT_FALSE(cursor.Read(value));
        EXPECT_EQ(value, 7U);
    }
    std::fclose(file);
}

TEST(StoreCursor, WithoutReadAheadTheFileStandsBehindTheLastField)
{
    OpenStore store(ByteBuilder().U64(1).F64(2).U64(3).U64(4).Bytes(), StoreCursor::kFieldsOnly);
    unsigned long long number = 0;
    double real = 0;
    store.cursor.Read(number);
    EXPECT_EQ(std::ftell(store.File()), 8);
    store.cursor.ReadDoubles(&real, 1);
    EXPECT_EQ(std::ftell(store.File()), 16);
    std::int32_t index = 0;
    store.cursor.ReadIndices(&index, 1);
    EXPECT_EQ(std::ftell(store.File()), 24);
}

TEST(StoreCursor, BeginsWhereTheFileStands)
{
    OpenStore whole(ByteBuilder().U64(1).U64(2).Bytes());
    std::fseek(whole.File(), 8, SEEK_SET);
    StoreCursor cursor(whole.File(), IOUtil::IsBigEndian(), StoreCursor::kWholeStore);
    EXPECT_EQ(cursor.Position(), 8U);
    EXPECT_EQ(cursor.Remaining(), 8U);
    unsigned long long number = 0;
    EXPECT_TRUE(cursor.Read(number));
    EXPECT_EQ(number, 2U);
}

TEST(StoreCursor, SeeksAnywhereAndNoFurtherThanTheEnd)
{
    for (std::size_t const readAhead : kReadAheads)
    {
        OpenStore store(ByteBuilder().U64(1).U64(2).U64(3).Bytes(), readAhead);
        unsigned long long number = 0;
        store.cursor.Seek(16);
        EXPECT_TRUE(store.cursor.Read(number));
        EXPECT_EQ(number, 3U);
        EXPECT_FALSE(store.cursor.Read(number));
        store.cursor.Seek(8);
        EXPECT_TRUE(store.cursor.Read(number));
        EXPECT_EQ(number, 2U);
        store.cursor.Seek(~0ULL);
        EXPECT_EQ(store.cursor.Position(), 24U);
        EXPECT_TRUE(store.cursor.HasEnded());
        store.cursor.Seek(0);
        EXPECT_TRUE(store.cursor.Read(number));
        EXPECT_EQ(number, 1U);
    }
}

TEST(StoreCursor, BytesMayBeLookedAtBeforeTheyAreTaken)
{
    std::string const bytes = Noise(StoreCursor::kWholeStore + 100);
    OpenStore store(bytes);
    std::size_t at = 0;
    while (store.cursor.Remaining() >= 100)
    {
        unsigned char const* const seen = store.cursor.Peek(100);
        ASSERT_TRUE(seen) << at;
        ASSERT_EQ(std::memcmp(seen, bytes.data() + at, 100), 0) << at;
        ASSERT_EQ(store.cursor.Position(), at);
        store.cursor.Skip(77);
        at += 77;
    }
    unsigned long long const left = store.cursor.Remaining();
    EXPECT_EQ(store.cursor.Peek(100), nullptr);
    EXPECT_EQ(store.cursor.Remaining(), left) << "nothing is consumed";
    EXPECT_TRUE(store.cursor.Peek(left));
}

TEST(StoreCursor, AFileThatIsCutWhileItIsReadEndsThere)
{
    std::string const bytes = Noise(3 * StoreCursor::kWholeStore);
    for (bool const asList : {false, true})
    {
        OpenStore store(bytes);
        unsigned long long number = 0;
        ASSERT_TRUE(store.cursor.Read(number));
        std::filesystem::resize_file(store.Path(), StoreCursor::kWholeStore + 8);
        std::vector<double> values(bytes.size() / 8 - 1);
        std::size_t read = 0;
        if (asList)
            read = store.cursor.ReadDoubles(values.data(), values.size());
        while (!asList && store.cursor.Read(values[read]))
            ++read;
        EXPECT_LE(read, StoreCursor::kWholeStore / 8);
        EXPECT_EQ(std::memcmp(values.data(), bytes.data() + 8, 8 * read), 0);
        EXPECT_TRUE(store.cursor.HasEnded());
        EXPECT_FALSE(store.cursor.Read(number));
    }
}

TEST(StoreCursor, ClaimsAddUpOverAFileAndBeyondTheLimitAreALengthError)
{
    OpenStore store(std::string(80, 'x'));
    StoreCursor& cursor = store.cursor;
    unsigned long long const limit = StoreCursor::kClaimLimit;
    EXPECT_NO_THROW(cursor.Expect(10, 8, 1'000'000'000)) << "ten are there";
    EXPECT_NO_THROW(cursor.Expect(10 + limit / 8, 8, 8));
    EXPECT_THROW(cursor.Expect(11, 8, 1), std::length_error);
    EXPECT_NO_THROW(cursor.Expect(10, 8, 8)) << "what is there can always be read";
    OpenStore other(std::string(80, 'x'));
    EXPECT_NO_THROW(other.cursor.Claim(limit / 2, 1));
    EXPECT_THROW(other.cursor.Claim(limit / 2 + 1, 1), std::length_error);
    EXPECT_NO_THROW(other.cursor.Claim(limit / 2, 1));
    for (unsigned long long const count : {1ULL << 31, 1ULL << 32, 1ULL << 40, 1ULL << 60, 1ULL << 63, ~0ULL})
    {
        OpenStore fresh(std::string(80, 'x'));
        try
        {
            fresh.cursor.Expect(count, 24, 24);
            ADD_FAILURE() << count;
        }
        catch (std::length_error const& error)
        {
            EXPECT_STREQ(error.what(), "vector<T> too long");
        }
    }
}

}  // namespace

}  // namespace KVR::Test
