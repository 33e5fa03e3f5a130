#include "framework/xml_util/BinaryReadWriteUtil.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>

#include "framework/api/IOUtil.h"
#include "tests/framework/xml_util/AllocationMeter.h"
#include "tests/framework/xml_util/Damage.h"
#include "tests/support/ByteBuilder.h"
#include "tests/support/TempFolder.h"

namespace
{

using namespace KVR;
using Test::ByteBuilder;
using Test::TempFolder;

// Turns the machine's order into the file's.
bool const kSwap = IOUtil::IsBigEndian();
// Reads files of the other order.
bool const kSwapOther = !kSwap;

class BinaryItem : public testing::Test
{
protected:
    // Calls `read` with a file of these bytes.
    template <class Read>
    void With(std::string_view bytes, Read read)
    {
        m_folder.Write("items.bin", bytes);
        FilePtr const file(UTF8String(m_folder.NarrowPathOf("items.bin")), "rb");
        ASSERT_TRUE(file);
        read(static_cast<std::FILE*>(file));
    }

    // Whether everything has been consumed.
    static bool IsAtEnd(std::FILE* file) { return std::fgetc(file) == EOF; }

private:
    TempFolder m_folder;
};

std::string Reversed(std::string const& bytes)
{
    return {bytes.rbegin(), bytes.rend()};
}

TEST_F(BinaryItem, OfEachNumberIsReadInFileOrder)
{
    With(ByteBuilder().U64(0x1122334455667788).F64(-1.25e-7).U32(0x99AABBCC).U64(0),
         [](std::FILE* file)
         {
             unsigned long long u64 = 1;
             double f64 = 1;
             unsigned int u32 = 1;
             EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, u64, kSwap), 1);
             EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, f64, kSwap), 1);
             EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, u32, kSwap), 1);
             EXPECT_EQ(u64, 0x1122334455667788U);
             EXPECT_EQ(f64, -1.25e-7);
             EXPECT_EQ(u32, 0x99AABBCCU);
             EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, u64, kSwap), 1);
             EXPECT_EQ(u64, 0U);
             EXPECT_TRUE(IsAtEnd(file));
         });
}

TEST_F(BinaryItem, HasItsLowestByteFirst)
{
    With("\x01\x02\x03\x04\x05\x06\x07\x08",
         [](std::FILE* file)
         {
             unsigned int low = 0;
             EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, low, kSwap), 1);
             EXPECT_EQ(low, 0x04030201U);
         });
}

TEST_F(BinaryItem, IsReadWithItsBytesSwapped)
{
    std::string const u64 = Reversed(ByteBuilder().U64(0x1122334455667788).Bytes());
    std::string const f64 = Reversed(ByteBuilder().F64(-1.25e-7).Bytes());
    std::string const u32 = Reversed(ByteBuilder().U32(0x99AABBCC).Bytes());
    std::string const three = Reversed(ByteBuilder().U64(3).Bytes());
    With(
        ByteBuilder().Raw(u64).Raw(f64).Raw(u32).Raw(three).Raw("abc").Raw(f64).Raw(f64).Raw(f64).BoolPair(true, false),
        [](std::FILE* file)
        {
            unsigned long long readU64 = 0;
            double readF64 = 0;
            unsigned int readU32 = 0;
            UTF8String text;
            EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, readU64, kSwapOther), 1);
            EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, readF64, kSwapOther), 1);
            EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, readU32, kSwapOther), 1);
            EXPECT_TRUE(BinaryReadWriteUtil::ReadData(file, text, kSwapOther));
            EXPECT_EQ(readU64, 0x1122334455667788U);
            EXPECT_EQ(readF64, -1.25e-7);
            EXPECT_EQ(readU32, 0x99AABBCCU);
            EXPECT_EQ(text, UTF8String("abc"));
            double x = 0;
            double y = 0;
            double z = 0;
            EXPECT_TRUE(BinaryReadWriteUtil::ReadData(file, x, y, z, kSwapOther));
            EXPECT_EQ(x, -1.25e-7);
            EXPECT_EQ(y, -1.25e-7);
            EXPECT_EQ(z, -1.25e-7);
            bool first = false;
            bool second = true;
            EXPECT_TRUE(BinaryReadWriteUtil::ReadData(file, first, second, kSwapOther));
            EXPECT_TRUE(first);
            EXPECT_FALSE(second);
        });
}

TEST_F(BinaryItem, ThatIsCutShortLeavesItsOutputAloneAndGivesNone)
{
    ForEachPrefix(ByteBuilder().U64(0x1122334455667788).Bytes(),
                  [this](std::string_view prefix)
                  {
                      With(prefix,
                           [](std::FILE* file)
                           {
                               unsigned long long value = 77;
                               EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, value, kSwap), 0);
                               EXPECT_EQ(value, 77U);
                           });
                      With(prefix,
                           [](std::FILE* file)
                           {
                               double value = 77;
                               EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, value, kSwapOther), 0);
                               EXPECT_EQ(value, 77.0);
                           });
                  });
    ForEachPrefix(ByteBuilder().U32(0x11223344).Bytes(),
                  [this](std::string_view prefix)
                  {
                      With(prefix,
                           [](std::FILE* file)
                           {
                               unsigned int value = 77;
                               EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, value, kSwap), 0);
                               EXPECT_EQ(value, 77U);
                           });
                  });
}

TEST_F(BinaryItem, OfThreeDoublesIsReadAsFarAsItGoes)
{
    std::string const bytes = ByteBuilder().F64(1).F64(2).F64(3).Bytes();
    With(bytes,
         [](std::FILE* file)
         {
             std::array<double, 3> xyz = {7, 8, 9};
             EXPECT_TRUE(BinaryReadWriteUtil::ReadData(file, xyz[0], xyz[1], xyz[2], kSwap));
             EXPECT_EQ(xyz, (std::array<double, 3>{1, 2, 3}));
         });
    ForEachPrefix(bytes,
                  [this](std::string_view prefix)
                  {
                      With(prefix,
                           [&](std::FILE* file)
                           {
                               std::array<double, 3> xyz = {7, 8, 9};
                               EXPECT_FALSE(BinaryReadWriteUtil::ReadData(file, xyz[0], xyz[1], xyz[2], kSwap));
                               EXPECT_EQ(xyz[0], prefix.size() >= 8 ? 1 : 7);
                               EXPECT_EQ(xyz[1], prefix.size() >= 16 ? 2 : 8);
                               EXPECT_EQ(xyz[2], 9);
                               EXPECT_TRUE(IsAtEnd(file));
                           });
                  });
}

TEST_F(BinaryItem, OfTwoFlagsTakesEveryByteButZeroForTrue)
{
    for (unsigned const byte : {0U, 1U, 2U, 127U, 128U, 255U})
    {
        for (unsigned const other : {0U, 1U, 255U})
        {
            With(ByteBuilder().Byte(byte).Byte(other),
                 [=](std::FILE* file)
                 {
                     bool first = byte == 0;
                     bool second = other == 0;
                     EXPECT_TRUE(BinaryReadWriteUtil::ReadData(file, first, second, kSwap));
                     EXPECT_EQ(first, byte != 0);
                     EXPECT_EQ(second, other != 0);
                     EXPECT_TRUE(IsAtEnd(file));
                 });
        }
    }
}

TEST_F(BinaryItem, OfTwoFlagsThatIsCutShortFails)
{
    With("",
         [](std::FILE* file)
         {
             bool first = true;
             bool second = true;
             EXPECT_FALSE(BinaryReadWriteUtil::ReadData(file, first, second, kSwap));
             EXPECT_TRUE(first);
             EXPECT_TRUE(second);
         });
    With(ByteBuilder().Byte(0),
         [](std::FILE* file)
         {
             bool first = false;
             bool second = true;
             EXPECT_FALSE(BinaryReadWriteUtil::ReadData(file, first, second, kSwap));
             EXPECT_FALSE(first);
             EXPECT_TRUE(second);
         });
}

TEST_F(BinaryItem, OfAStringIsItsLengthAndItsBytes)
{
    With(ByteBuilder().String("id").String("").String("Räder"),
         [](std::FILE* file)
         {
             UTF8String text("former");
             EXPECT_TRUE(BinaryReadWriteUtil::ReadData(file, text, kSwap));
             EXPECT_EQ(text, UTF8String("id"));
             EXPECT_TRUE(BinaryReadWriteUtil::ReadData(file, text, kSwap));
             EXPECT_TRUE(text.IsEmpty());
             EXPECT_TRUE(BinaryReadWriteUtil::ReadData(file, text, kSwap));
             EXPECT_EQ(text, UTF8String("Räder"));
             EXPECT_TRUE(IsAtEnd(file));
             EXPECT_FALSE(BinaryReadWriteUtil::ReadData(file, text, kSwap));
             EXPECT_EQ(text.Size(), 6U);
         });
}

TEST_F(BinaryItem, OfAStringKeepsItsBytesAsTheyAre)
{
    std::string const bytes("a\0\xFF\xC3z", 5);
    With(ByteBuilder().String(bytes),
         [&](std::FILE* file)
         {
             UTF8String text;
             EXPECT_TRUE(BinaryReadWriteUtil::ReadData(file, text, kSwap));
             EXPECT_EQ(text.View(), bytes);
         });
}

TEST_F(BinaryItem, OfALongStringIsReadWhole)
{
    for (std::size_t const size : {65535U, 65536U, 65537U, 131072U, 1000003U})
    {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>('a' + i % 23);
        With(ByteBuilder().String(bytes).U32(5),
             [&](std::FILE* file)
             {
                 UTF8String text;
                 EXPECT_TRUE(BinaryReadWriteUtil::ReadData(file, text, kSwap));
                 EXPECT_TRUE(text.View() == bytes) << size;
                 unsigned int behind = 0;
                 EXPECT_EQ(BinaryReadWriteUtil::BinaryRead(file, behind, kSwap), 1);
                 EXPECT_EQ(behind, 5U);
             });
    }
}

TEST_F(BinaryItem, OfAStringThatIsCutShortConsumesTheRestAndLeavesItsOutputAlone)
{
    ForEachPrefix(ByteBuilder().String("a string").Bytes(),
                  [this](std::string_view prefix)
                  {
                      With(prefix,
                           [](std::FILE* file)
                           {
                               UTF8String text("former");
                               EXPECT_FALSE(BinaryReadWriteUtil::ReadData(file, text, kSwap));
                               EXPECT_EQ(text, UTF8String("former"));
                               EXPECT_TRUE(IsAtEnd(file));
                           });
                  });
}

TEST_F(BinaryItem, OfAStringTakesNoMemoryOnTheWordOfItsLength)
{
    constexpr std::uint64_t kClaims[] = {
        std::uint64_t{1} << 31,
        (std::uint64_t{1} << 31) - 1,
        std::uint64_t{1} << 32,
        std::uint64_t{1} << 60,
        (std::uint64_t{1} << 63) - 1,
        std::uint64_t{1} << 63,
        100000000,
        std::numeric_limits<std::uint64_t>::max(),
    };
    for (std::uint64_t const claim : kClaims)
    {
        With(ByteBuilder().U64(claim).Raw("what there is"),
             [claim](std::FILE* file)
             {
                 UTF8String text("former");
                 AllocationMeter const meter;
                 bool const isRead = BinaryReadWriteUtil::ReadData(file, text, kSwap);
                 std::ptrdiff_t const peak = meter.Peak();
                 EXPECT_FALSE(isRead) << claim;
                 EXPECT_EQ(text, UTF8String("former")) << claim;
                 EXPECT_TRUE(IsAtEnd(file)) << claim;
                 EXPECT_LT(peak, 256 * 1024) << claim;
             });
    }
}

}  // namespace
