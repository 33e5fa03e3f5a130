#include "framework/xml_util/XMLPlatform.h"

#include <gtest/gtest.h>

#include <memory>
#include <xercesc/util/PlatformUtils.hpp>

#include "tests/framework/xml_util/AllocationMeter.h"

namespace
{

using namespace KVR;

TEST(XMLPlatform, IsThereUntilEveryHolderHasReleasedIt)
{
    ASSERT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
    {
        XMLPlatformScope const outer;
        EXPECT_TRUE(outer.IsAcquired());
        {
            XMLPlatformScope const inner;
            EXPECT_TRUE(inner.IsAcquired());
        }
        EXPECT_NE(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
    }
    EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
}

TEST(XMLPlatform, GivesBackAllItsMemory)
{
    static_cast<void>(XMLPlatformScope().IsAcquired());
    AllocationMeter const meter;
    for (int i = 0; i < 10; ++i)
    {
        ASSERT_TRUE(XMLPlatform::Acquire());
        XMLPlatform::Release();
    }
    EXPECT_EQ(meter.Live(), 0);
}

}  // namespace
