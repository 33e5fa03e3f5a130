// A scene that is cut short, and one with bytes changed.

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

#include "framework/xml_util/XMLPlatform.h"
#include "tests/support/FullScene.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

struct Outcomes
{
    int read = 0;
    int refused = 0;
    unsigned long long objects = 0;
};

// Reads a damaged scene; one that is refused must have left nothing.
void Try(std::string const& bytes, Outcomes& outcomes, bool withSideFiles = true)
{
    TestScene scene(bytes);
    if (withSideFiles)
        WriteSideFiles(scene);
    bool hasStructure = false;
    ASSERT_EQ(scene.Producer().QueryFile()->HasAssemblyStructure(hasStructure), kIsValueSpecified_Yes);
    if (Opens(scene))
    {
        ++outcomes.read;
        SceneAnswers const answers = WalkScene(scene.Producer(), FullSceneIds());
        outcomes.objects += answers.Objects();
        // There are as many elements of objects, and none of them has more than one object.
        ASSERT_LE(answers.Objects(), 9U);
        return;
    }
    ++outcomes.refused;
    ASSERT_EQ(scene.Producer().LoadUniverse(), nullptr);
    ASSERT_THROW(scene.Producer().RootObjectId(), GeneralException);
    for (std::string const& id : FullSceneIds())
        ASSERT_FALSE(scene.Has(id.c_str()));
}

enum class Damage
{
    kFlipABit,
    kReplaceAByte,
    kTakeBytesOut,
    kRepeatBytes,
    kSwapAName
};

std::string Damaged(std::string bytes, Damage damage, std::mt19937& random)
{
    auto const below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
    std::size_t const place = below(bytes.size());
    switch (damage)
    {
        case Damage::kFlipABit:
            bytes[place] = static_cast<char>(static_cast<unsigned char>(bytes[place]) ^ (1U << below(8)));
            break;
        case Damage::kReplaceAByte:
            // Of bytes that mean something to the format.
            bytes[place] = "<>/\"'= &;!?[]-0129.,:#TI\n"[below(26)];
            break;
        case Damage::kTakeBytesOut:
            bytes.erase(place, 1 + below(40));
            break;
        case Damage::kRepeatBytes:
            bytes.insert(below(bytes.size()), bytes.substr(place, 1 + below(200)));
            break;
        case Damage::kSwapAName:
        {
            // Elements and attributes with another name, well-formed or not.
            constexpr std::array names = {"ID", "Path", "Type", "Child", "IPart", "Unit", "Styles", "ChildSet", "Key"};
            std::string const from = names[below(names.size())];
            auto const at = bytes.find(from, place);
            if (at != std::string::npos)
                bytes.replace(at, from.size(), names[below(names.size())]);
            break;
        }
    }
    return bytes;
}

class HostileDamageOf : public testing::TestWithParam<unsigned>
{
};

}  // namespace

TEST(HostileDamage, TheSceneIsOfTheSizeItIsSaidToBe)
{
    EXPECT_GT(FullScene().size(), 3900U);
    EXPECT_LT(FullScene().size(), 5500U);
    Outcomes outcomes;
    Try(FullScene(), outcomes);
    EXPECT_EQ(outcomes.read, 1);
    EXPECT_EQ(outcomes.objects, 9U);
}

TEST(HostileDamage, EveryPrefixOfASceneIsRefused)
{
    std::string const whole = FullScene();
    Outcomes outcomes;
    // A hold on Xerces saves its setting up for each scene.
    XMLPlatformScope const platform;
    for (std::size_t length = 0; length < whole.size(); ++length)
        ASSERT_NO_FATAL_FAILURE(Try(whole.substr(0, length), outcomes, false)) << length;
    EXPECT_EQ(outcomes.read, 0);
    EXPECT_EQ(outcomes.refused, static_cast<int>(whole.size()));
}

// Ten times a thousand scenes, of each kind of damage.
TEST_P(HostileDamageOf, ASceneIsReadOrRefusedAndNothingElse)
{
    std::mt19937 random(GetParam());
    Outcomes outcomes;
    XMLPlatformScope const platform;
    std::string const whole = FullScene();
    for (int i = 0; i < 1000; ++i)
    {
        auto const damage = static_cast<Damage>(i % 5);
        std::string const bytes = Damaged(whole, damage, random);
        ASSERT_NO_FATAL_FAILURE(Try(bytes, outcomes)) << "case " << i << '\n' << bytes;
    }
    EXPECT_EQ(outcomes.read + outcomes.refused, 1000);
    EXPECT_GT(outcomes.read, 100);
    EXPECT_GT(outcomes.refused, 100);
    EXPECT_GT(outcomes.objects, 500U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, HostileDamageOf, testing::Range(1U, 11U));

}  // namespace KVR::Test
