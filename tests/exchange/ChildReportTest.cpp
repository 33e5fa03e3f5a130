#include "exchange/run/ChildReport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace KVR::Test
{

namespace
{

using Kind = ChildReport::Kind;

// A whole report: progress, two remarks and a result, with every kind of byte in them.
std::string Stream()
{
    std::string text;
    for (int byte = 0; byte < 256; ++byte)
        text += static_cast<char>(byte);
    return ChildReport::Record(Kind::kProgress, ChildReport::ProgressText({"reading a file", 0.25})) +
           ChildReport::Record(Kind::kRemark, "first") + ChildReport::Record(Kind::kRemark, text) +
           ChildReport::Record(Kind::kProgress, ChildReport::ProgressText({"writing", {}})) +
           ChildReport::Record(Kind::kResult, "42");
}

ChildReport Taken(std::string const& bytes)
{
    ChildReport report;
    report.Take(bytes, {});
    return report;
}

}  // namespace

TEST(ChildReport, TellsWhatWasPutInInAnyPieces)
{
    std::string const stream = Stream();
    for (std::size_t size : {std::size_t{1}, std::size_t{2}, std::size_t{7}, stream.size()})
    {
        ChildReport report;
        std::vector<ProgressReport> progress;
        for (std::size_t place = 0; place < stream.size(); place += size)
            EXPECT_TRUE(report.Take(stream.substr(place, size),
                                    [&](ProgressReport const& told)
                                    {
                                        progress.push_back(told);
                                        return true;
                                    }));
        EXPECT_TRUE(report.IsWhole());
        ASSERT_EQ(progress.size(), 2u);
        EXPECT_EQ(progress[0].stage, "reading a file");
        EXPECT_EQ(progress[0].fraction, 0.25);
        EXPECT_EQ(progress[1].stage, "writing");
        EXPECT_EQ(progress[1].fraction, std::nullopt);
        EXPECT_EQ(report.LastProgress().stage, "writing");
        ASSERT_EQ(report.Remarks().size(), 2u);
        EXPECT_EQ(report.Remarks()[0], "first");
        EXPECT_EQ(report.Remarks()[1].size(), 256u);
        EXPECT_EQ(report.Result(), "42");
        EXPECT_EQ(report.Failure(), std::nullopt);
    }
}

TEST(ChildReport, NoPrefixIsWhole)
{
    std::string const stream = Stream();
    for (std::size_t size = 0; size < stream.size(); ++size)
        EXPECT_FALSE(Taken(stream.substr(0, size)).IsWhole()) << size;
    EXPECT_TRUE(Taken(stream).IsWhole());
}

TEST(ChildReport, NoChangeOfAByteGoesUnnoticed)
{
    std::string const stream = Stream();
    for (std::size_t place = 0; place < stream.size(); ++place)
        for (int bit = 0; bit < 8; ++bit)
        {
            std::string damaged = stream;
            damaged[place] = static_cast<char>(damaged[place] ^ (1 << bit));
            EXPECT_FALSE(Taken(damaged).IsWhole()) << place << ' ' << bit;
        }
}

TEST(ChildReport, WhatFollowsTheEndIsDamage)
{
    EXPECT_FALSE(Taken(Stream() + "x").IsWhole());
    EXPECT_FALSE(Taken(Stream() + Stream()).IsWhole());
    std::string const failed = ChildReport::Record(Kind::kFailure, "");
    EXPECT_TRUE(Taken(failed).IsWhole());
    EXPECT_EQ(Taken(failed).Failure(), "");
    EXPECT_FALSE(Taken(failed + ChildReport::Record(Kind::kResult, "1")).IsWhole());
}

TEST(ChildReport, AnUnknownKindIsDamage)
{
    EXPECT_FALSE(Taken(ChildReport::Record(static_cast<Kind>(77), "") + Stream()).IsWhole());
}

TEST(ChildReport, StopsAtTheRecordThatIsNotToGoOn)
{
    ChildReport report;
    EXPECT_FALSE(report.Take(Stream(), [](ProgressReport const&) { return false; }));
    EXPECT_TRUE(report.Remarks().empty());
}

}  // namespace KVR::Test
