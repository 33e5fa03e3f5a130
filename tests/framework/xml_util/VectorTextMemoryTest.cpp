// Here, where memory is metered.

#include <gtest/gtest.h>

#include <string>

#include "readers/VectorTextReader.h"
#include "tests/framework/xml_util/AllocationMeter.h"

namespace
{

using namespace KVR;

TEST(ReadVectorText, TakesNoMemoryForATextOfAnyLength)
{
    constexpr std::size_t kLong = 10'000'000;
    for (std::string const& long_ :
         {std::string(kLong, ','), std::string(kLong, '1'), "1,2," + std::string(kLong, ' ')})
    {
        UTF8String const text{std::string_view(long_)};
        double x = 7.0;
        double y = 8.0;
        double z = 9.0;
        AllocationMeter const meter;
        bool const isRead = ReadVectorText(text, x, y, z);
        std::ptrdiff_t const most = meter.Peak();
        EXPECT_LT(most, 1000);
        EXPECT_EQ(isRead, long_[0] == '1' && long_[1] == ',');
    }
}

}  // namespace
