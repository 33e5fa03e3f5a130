#include "producer/XMLProducerOptions.h"

#include <gtest/gtest.h>

#include "tests/support/TestScene.h"

namespace KVR::Test
{

TEST(XMLProducerOptions, WantLayersAndNoInsecureStoresUntilSet)
{
    XMLProducerOptions const options;
    EXPECT_TRUE(options.WantLayer());
    EXPECT_FALSE(options.WantRestoreInsecureGMKFiles());
}

TEST(XMLProducerOptions, ReportWhatWasSet)
{
    XMLProducerOptions options;
    options.SetWantLayer(false);
    EXPECT_FALSE(options.WantLayer());
    EXPECT_FALSE(options.WantRestoreInsecureGMKFiles()) << "each switch by itself";
    options.SetWantRestoreInsecureGMKFiles(true);
    EXPECT_TRUE(options.WantRestoreInsecureGMKFiles());
    EXPECT_FALSE(options.WantLayer());
    options.SetWantLayer(true);
    options.SetWantRestoreInsecureGMKFiles(false);
    EXPECT_TRUE(options.WantLayer());
    EXPECT_FALSE(options.WantRestoreInsecureGMKFiles());
}

TEST(XMLProducerOptions, ThatWantNoLayersChangeNothingInWhatIsRead)
{
    TestScene scene(R"(<S><IFile ID="f"/></S>)");
    scene.Options().SetWantLayer(false);
    EXPECT_TRUE(scene.Begin().Has("f"));
    EXPECT_FALSE(scene.Options().WantLayer()) << "options stay the host's";
}

}  // namespace KVR::Test
