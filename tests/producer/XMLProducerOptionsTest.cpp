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
    for (bool const wantsLayers : {true, false})
    {
        TestScene scene(R"(<S><IPart ID="p" Label=""><AttributeSet><LayerSet>
            <ILayer ID="l" Label="L"><GeometryItems Items="a,b"/></ILayer></LayerSet></AttributeSet></IPart></S>)");
        scene.Options().SetWantLayer(wantsLayers);
        scene.Begin();
        EXPECT_EQ(Ids(scene.Get<IPart>("p").LayerSet()), std::vector<std::string>{"l"}) << wantsLayers;
        EXPECT_EQ(Ids(scene.Get<ILayer>("l").GeometryItems()), (std::vector<std::string>{"a", "b"})) << wantsLayers;
        EXPECT_EQ(scene.Options().WantLayer(), wantsLayers) << "options stay the host's";
    }
}

}  // namespace KVR::Test
