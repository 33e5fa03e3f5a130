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

// Many scenes, one after the other, in one folder with side files.
class HostileDamage : public testing::Test
{
protected:
    HostileDamage() { WriteSideFiles(m_folder); }

    // Reads a damaged scene; one that is refused must have left nothing.
    void Try(std::string const& bytes, Outcomes& outcomes)
    {
        XMLProducer producer(m_folder.Write("scene.xml", bytes), nullptr);
        bool hasStructure = false;
        ASSERT_EQ(producer.QueryFile()->HasAssemblyStructure(hasStructure), kIsValueSpecified_Yes);
        if (Opens(producer))
        {
            ++outcomes.read;
            SceneAnswers const answers = WalkScene(producer, FullSceneIds());
            outcomes.objects += answers.Objects();
            // There are as many elements of objects, and one that is repeated can have another id, once.
            ASSERT_LE(answers.Objects(), 28U);
            return;
        }
        ++outcomes.refused;
        ASSERT_EQ(producer.LoadUniverse(), nullptr);
        ASSERT_THROW(producer.RootObjectId(), GeneralException);
        for (std::string const& id : FullSceneIds())
            ASSERT_EQ(producer.Load(id.c_str()), nullptr);
    }

private:
    // A hold on Xerces saves its setting up for each scene.
    XMLPlatformScope m_platform;
    TempFolder m_folder;
};

enum class Damage
{
    kFlipAByte,
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
        case Damage::kFlipAByte:
            // Half of the time one bit, so that letters become other letters.
            bytes[place] = static_cast<char>(static_cast<unsigned char>(bytes[place]) ^
                                             (below(2) == 0 ? 1U << below(8) : 1U + below(255)));
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

class HostileDamageOf : public HostileDamage, public testing::WithParamInterface<unsigned>
{
};

}  // namespace

TEST_F(HostileDamage, TheSceneIsOfTheSizeItIsSaidToBe)
{
    EXPECT_GT(FullScene().size(), 3900U);
    EXPECT_LT(FullScene().size(), 6500U);
    Outcomes outcomes;
    Try(FullScene(), outcomes);
    EXPECT_EQ(outcomes.read, 1);
    EXPECT_EQ(outcomes.objects, 26U);
}

TEST_F(HostileDamage, EveryPrefixOfASceneIsRefused)
{
    std::string const whole = FullScene();
    Outcomes outcomes;
    for (std::size_t length = 0; length < whole.size(); ++length)
        ASSERT_NO_FATAL_FAILURE(Try(whole.substr(0, length), outcomes)) << length;
    EXPECT_EQ(outcomes.read, 0);
    EXPECT_EQ(outcomes.refused, static_cast<int>(whole.size()));
}

TEST_P(HostileDamageOf, OneOrMoreBytesLeavesASceneThatIsReadOrRefusedAndNothingElse)
{
    std::mt19937 random(GetParam());
    Outcomes outcomes;
    std::string const whole = FullScene();
    for (int i = 0; i < 1000; ++i)
    {
        std::string bytes = whole;
        for (int flips = 1 + i % 3; flips > 0; --flips)
            bytes = Damaged(bytes, Damage::kFlipAByte, random);
        ASSERT_NO_FATAL_FAILURE(Try(bytes, outcomes)) << "case " << i << '\n' << bytes;
    }
    EXPECT_EQ(outcomes.read + outcomes.refused, 1000);
    EXPECT_GT(outcomes.read, 50);
    EXPECT_GT(outcomes.refused, 50);
    EXPECT_GT(outcomes.objects, 250U);
}

TEST_P(HostileDamageOf, OtherKindsLeavesASceneThatIsReadOrRefusedAndNothingElse)
{
    std::mt19937 random(1000 + GetParam());
    Outcomes outcomes;
    std::string const whole = FullScene();
    for (int i = 0; i < 400; ++i)
    {
        std::string const bytes = Damaged(whole, static_cast<Damage>(1 + i % 4), random);
        ASSERT_NO_FATAL_FAILURE(Try(bytes, outcomes)) << "case " << i << '\n' << bytes;
    }
    EXPECT_EQ(outcomes.read + outcomes.refused, 400);
    EXPECT_GT(outcomes.read, 40);
    EXPECT_GT(outcomes.refused, 40);
}

INSTANTIATE_TEST_SUITE_P(Seeds, HostileDamageOf, testing::Range(1U, 11U));

}  // namespace KVR::Test
