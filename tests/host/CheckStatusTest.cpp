// What "kvr check" ends with.

#include <gtest/gtest.h>

#include "host/check/CheckedScene.h"

namespace KVR::Test
{

namespace
{

CheckedScene SceneWith(Severity severity)
{
    CheckedScene scene;
    for (Rule const& rule : AllRules())
    {
        if (rule.severity != severity)
            continue;
        scene.result.findings.emplace_back().rule = &rule;
        break;
    }
    return scene;
}

Account AccountOf(std::uint64_t seen, std::uint64_t served)
{
    Account account;
    account.seen = seen;
    account.served = served;
    return account;
}

}  // namespace

TEST(CheckStatus, IsThatOfTheWorstFinding)
{
    EXPECT_EQ(CheckedScene().Status(Severity::kNote), kExit_Good);
    EXPECT_EQ(SceneWith(Severity::kWarning).Status(Severity::kError), kExit_Good);
    EXPECT_EQ(SceneWith(Severity::kWarning).Status(Severity::kWarning), kExit_Failed);
    EXPECT_EQ(SceneWith(Severity::kError).Status(Severity::kNote), kExit_Failed);
}

TEST(CheckStatus, IsThreeWhenAnAccountDisagreesWhateverWasFound)
{
    CheckedScene scene = SceneWith(Severity::kError);
    scene.result.accounts = {AccountOf(2, 2), AccountOf(3, 2)};
    EXPECT_EQ(static_cast<int>(scene.Status(Severity::kError)), 3);
    scene.result.accounts = {AccountOf(2, 2)};
    EXPECT_EQ(scene.Status(Severity::kError), kExit_Failed);
    scene.result.accounts = {AccountOf(1, 2)};
    EXPECT_EQ(static_cast<int>(scene.Status(Severity::kNote)), 3);
}

}  // namespace KVR::Test
