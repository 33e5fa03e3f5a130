#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "framework/api/Matrix3d.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XStr.h"
#include "tests/framework/xml_util/AllocationMeter.h"
#include "tests/framework/xml_util/CommaLocale.h"

namespace
{

using namespace KVR;

using Elements = std::array<double, Matrix3d::kElementCount>;

constexpr Elements kFormer = {9, 8, 7, 6, 5, 4, 3, 2, 1, 0, -1, -2, -3, -4, -5, -6};
constexpr Elements kCounting = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

// The elements that both forms of the text give to a matrix of kFormer; nothing when the two differ.
std::optional<Elements> Read(std::string const& text)
{
    Matrix3d fromNarrow;
    fromNarrow.SetElements(kFormer);
    XMLStrUtil::GetTransfFromStr(UTF8String(text), fromNarrow);
    Matrix3d fromDocument;
    fromDocument.SetElements(kFormer);
    XMLStrUtil::GetTransfFromStr(XStr(text.c_str()).unicodeForm(), fromDocument);
    if (fromNarrow.Elements() != fromDocument.Elements())
        return {};
    return fromNarrow.Elements();
}

constexpr char const* kBlanks = "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16";

TEST(TransformText, Holds16NumbersInRowOrder)
{
    Matrix3d matrix;
    XMLStrUtil::GetTransfFromStr(UTF8String("1 0 0 10  0 1 0 20  0 0 1 30  0 0 0 1"), matrix);
    EXPECT_EQ(matrix.Element(0, 3), 10.0);
    EXPECT_EQ(matrix.Element(1, 3), 20.0);
    EXPECT_EQ(matrix.Element(2, 3), 30.0);
    EXPECT_EQ(matrix.Element(3, 0), 0.0);
    EXPECT_EQ(Read(kBlanks), kCounting);
}

TEST(TransformText, IsSeparatedByWhiteSpaceOrCommas)
{
    EXPECT_EQ(Read("1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16"), kCounting);
    EXPECT_EQ(Read("1, 2, 3, 4,\n5, 6, 7, 8,\n9, 10, 11, 12,\n13, 14, 15, 16"), kCounting);
    EXPECT_EQ(Read("\r\n\t1\t2 3\n4\r\n5\v6\f7 8,9 ,10   11 12 13 14 15 16 \n"), kCounting);
}

TEST(TransformText, TakesEveryFormOfANumber)
{
    Elements const expected = {0.5, -1.5, 1000, -0.01, 1, 0.25, 5, -7, 0, 0, 0, 0, 1e300, -1e-300, 3.141592653589793,
                               1};
    EXPECT_EQ(Read("0.5 -1.5 1e3 -1E-2 +1 .25 5. -7 0 0.0 0e5 -0 1e300 -1e-300 3.141592653589793 1"), expected);
}

TEST(TransformText, LeavesTheMatrixAloneForAnyOtherCount)
{
    EXPECT_EQ(Read(""), kFormer);
    EXPECT_EQ(Read(" \n\t"), kFormer);
    EXPECT_EQ(Read(",,,"), kFormer);
    EXPECT_EQ(Read("1"), kFormer);
    EXPECT_EQ(Read("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15"), kFormer);
    EXPECT_EQ(Read("1 2 3 4 5 6 7 8 9 10 11 12"), kFormer);
    EXPECT_EQ(Read(std::string(kBlanks) + " 17"), kFormer);
    EXPECT_EQ(Read(std::string(kBlanks) + " x"), kFormer);
    EXPECT_EQ(Read(std::string(kBlanks) + " " + kBlanks), kFormer);
}

TEST(TransformText, LeavesTheMatrixAloneForAPieceThatIsNoNumberWhereverItStands)
{
    for (char const* const bad : {"x", "nan", "inf", "0x1", "1e400", "1.2.3", "1;", "--1", "\xC2\xA0"})
    {
        for (int place = 0; place < Matrix3d::kElementCount; ++place)
        {
            std::string text;
            for (int i = 0; i < Matrix3d::kElementCount; ++i)
                text += (i == place ? std::string(bad) : std::to_string(i)) + ' ';
            EXPECT_EQ(Read(text), kFormer) << text;
        }
    }
}

TEST(TransformText, LeavesTheMatrixAloneForANullPointer)
{
    Matrix3d matrix;
    matrix.SetElements(kFormer);
    XMLStrUtil::GetTransfFromStr(static_cast<XMLCh const*>(nullptr), matrix);
    EXPECT_EQ(matrix.Elements(), kFormer);
}

TEST(TransformText, MayBeOfAnyLength)
{
    std::string const start = "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 ";
    for (std::size_t length = 1010; length < 1040; ++length)
    {
        std::string const zeros(length - start.size() - 2, '0');
        EXPECT_EQ(Read(start + zeros + "16"), kCounting) << length;
        EXPECT_EQ(Read(std::string(length, ' ') + kBlanks), kCounting) << length;
        EXPECT_EQ(Read(start + zeros + "1x"), kFormer) << length;
    }
    EXPECT_EQ(Read(std::string(1000000, '\n') + kBlanks), kCounting);
}

TEST(TransformText, DoesNotDropATransformForBeingSmall)
{
    Matrix3d matrix;
    XMLStrUtil::GetTransfFromStr(UTF8String("1 0 0 1e-300 0 1 0 0 0 0 1 0 0 0 0 1"), matrix);
    EXPECT_EQ(matrix.Element(0, 3), 1e-300);
    EXPECT_FALSE(matrix.IsIdentity());
}

TEST(TransformText, OfADocumentIsReadWithoutAllocation)
{
    Matrix3d matrix;
    AllocationMeter const meter;
    XMLStrUtil::GetTransfFromStr(u"1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16", matrix);
    std::size_t const count = AllocationMeter::Count();
    EXPECT_EQ(matrix.Elements(), kCounting);
    EXPECT_EQ(count, 0U);
}

using TransformTextUnderACommaLocale = UnderACommaLocale;

TEST_F(TransformTextUnderACommaLocale, KeepsTheCommaForASeparator)
{
    EXPECT_EQ(Read("1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16"), kCounting);
    EXPECT_EQ(Read("1.0 2.0 3.0 4.0 5 6 7 8 9 10 11 12 13 14 15 16.0"), kCounting);
    EXPECT_EQ(Read("1,0 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16"), kFormer);
}

}  // namespace
