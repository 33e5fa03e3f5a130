#include "tests/framework/xml_util/AllocationMeter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "framework/xml_util/XMLPlatform.h"

namespace
{

TEST(AllocationMeter, TellsWhatIsLiveAndTheMostThatWas)
{
    // Called by name: a compiler may leave out a pair of expressions.
    AllocationMeter const meter;
    void* const first = ::operator new(100000);
    ::operator delete(first);
    void* const second = ::operator new(50000);
    EXPECT_GE(meter.Live(), 50000);
    EXPECT_LT(meter.Live(), 60000);
    EXPECT_GE(meter.Peak(), 100000);
    EXPECT_LT(meter.Peak(), 110000);
    EXPECT_EQ(AllocationMeter::Count(), 2U);
    ::operator delete(second);
    EXPECT_EQ(meter.Live(), 0);
}

TEST(AllocationMeter, SeesAlignedMemory)
{
    constexpr std::align_val_t kAlignment{4096};
    AllocationMeter const meter;
    void* const memory = ::operator new(100000, kAlignment);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % 4096, 0U);
    EXPECT_GE(meter.Live(), 100000);
    ::operator delete(memory, kAlignment);
    EXPECT_EQ(meter.Live(), 0);
}

TEST(AllocationMeter, SeesWhatXercesTakes)
{
    KVR::XMLPlatformScope const platform;
    ASSERT_TRUE(platform.IsAcquired());
    AllocationMeter const meter;
    void* const memory = xercesc::XMLPlatformUtils::fgMemoryManager->allocate(100000);
    EXPECT_GE(meter.Live(), 100000);
    xercesc::XMLPlatformUtils::fgMemoryManager->deallocate(memory);
    EXPECT_EQ(meter.Live(), 0);
}

}  // namespace
