#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "exchange/view/ViewPage.h"

// A build that was configured with KVR_BUILD_VIEWER=OFF: this program has the source without the page.
namespace KVR::Test
{

TEST(NoPage, IsSaidInOneSentence)
{
    EXPECT_FALSE(ViewPage::IsThere());
    EXPECT_THAT([] { ViewPage::Parts(); },
                testing::ThrowsMessage<std::runtime_error>(
                    "this build has no viewer: it was configured with KVR_BUILD_VIEWER=OFF"));
}

}  // namespace KVR::Test
