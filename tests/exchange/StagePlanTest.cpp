#include "exchange/run/StagePlan.h"

#include <gtest/gtest.h>

#include <vector>

#include "exchange/run/StageProgress.h"

namespace KVR::Test
{

namespace
{

// Keeps what it is told of the whole.
class Whole
{
public:
    Progress Callback()
    {
        return [this](ProgressReport const& report)
        {
            last = report;
            return goesOn;
        };
    }
    ProgressReport last;
    bool goesOn = true;
};

}  // namespace

TEST(StagePlan, AStageCountsByItsShare)
{
    Whole whole;
    Progress const told = whole.Callback();
    Progress const plan = Planned(told, {{"one", 1}, {"two", 3}});
    EXPECT_TRUE(plan({"one", std::nullopt}));
    EXPECT_EQ(whole.last.whole, 0.0);
    EXPECT_TRUE(plan({"one", 0.5}));
    EXPECT_EQ(whole.last.whole, 0.125);
    EXPECT_TRUE(plan({"two", std::nullopt}));
    EXPECT_EQ(whole.last.whole, 0.25);
    EXPECT_TRUE(plan({"two", 1.0}));
    EXPECT_EQ(whole.last.whole, 1.0);
    EXPECT_EQ(whole.last.stage, "two");
}

TEST(StagePlan, TheWholeNeverFalls)
{
    Whole whole;
    Progress const told = whole.Callback();
    Progress const plan = Planned(told, {{"one", 1}, {"two", 1}});
    plan({"two", 0.5});
    for (ProgressReport const& report :
         {ProgressReport{"one", 0.5}, ProgressReport{"other", 0.1}, ProgressReport{"two", -3.0}})
    {
        plan(report);
        EXPECT_EQ(whole.last.whole, 0.75) << report.stage;
        EXPECT_EQ(whole.last.fraction, report.fraction);
    }
}

TEST(StagePlan, ANameThatComesAgainIsTheNextOfThatName)
{
    Whole whole;
    Progress const told = whole.Callback();
    Progress const plan = Planned(told, {{"read", 1}, {"write", 1}, {"check", 1}, {"write", 1}});
    std::vector<double> wholes;
    for (char const* const stage : {"read", "write", "write", "check", "check", "read", "write"})
    {
        plan({stage, 0.5});
        wholes.push_back(whole.last.whole);
    }
    EXPECT_EQ(wholes, (std::vector{0.125, 0.375, 0.375, 0.625, 0.625, 0.625, 0.875}));
}

TEST(StagePlan, APartLiesBetweenItsEnds)
{
    Whole whole;
    Progress const told = whole.Callback();
    Progress const part = PartOf(told, 0.5, 0.75);
    part({"one", std::nullopt, 0.5});
    EXPECT_EQ(whole.last.whole, 0.625);
    whole.goesOn = false;
    EXPECT_FALSE(part({"one", std::nullopt, 1.0}));
    EXPECT_EQ(whole.last.whole, 0.75);
}

TEST(StagePlan, NobodyStaysNobody)
{
    EXPECT_FALSE(Planned({}, {{"one", 1}}));
    EXPECT_FALSE(PartOf({}, 0.0, 1.0));
}

TEST(StagePlan, NoStageIsTheOneThatWasBegun)
{
    Whole whole;
    Progress const told = whole.Callback();
    Progress const plan = Planned(told, {{"one", 1}, {"two", 1}});
    plan({"two", 0.5});
    plan({});
    EXPECT_EQ(whole.last.stage, "two");
    EXPECT_EQ(whole.last.whole, 0.75);
}

TEST(EachPercent, TellsOfStagesAndPercentsOnce)
{
    std::vector<ProgressReport> told;
    TellStage const tell = EachPercent([&](ProgressReport const& report) { told.push_back(report); });
    for (int i = 0; i < 10'000; ++i)
        tell("one", i / 10'000.0);
    tell("two", 0.0);
    tell("two", 0.001);
    ASSERT_EQ(told.size(), 101U);
    EXPECT_EQ(told[1].fraction, 0.01);
    EXPECT_EQ(told.back().stage, "two");
}

}  // namespace KVR::Test
