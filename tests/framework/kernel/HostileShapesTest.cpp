// Stores whose shapes say of themselves what is not true, in one place each.

#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "tests/support/StoreText.h"

namespace KVR::Test
{

namespace
{

TEST(HostileShapes, WhatIsGoodIsRestored)
{
    EXPECT_TRUE(TextContent().IsRestored());
}

TEST(HostileShapes, CurvesStandOnEachOtherTenDeep)
{
    TextContent content;
    content.curves = "Curves 1\n" + Repeated("9 1\n0 0 1\n", 9) + kCircle;
    EXPECT_TRUE(content.IsRestored());
    for (int const depth : {10, 100'000})
    {
        content.curves = "Curves 1\n" + Repeated("9 1\n0 0 1\n", depth) + kCircle;
        EXPECT_FALSE(content.IsRestored()) << depth;
    }
}

TEST(HostileShapes, ACurveThatCannotBeMadeIsNoBasisAndEndsTheReading)
{
    TextContent content;
    for (char const* const curve :
         {"2 0 0 0 0 0 1 1 0 0 0 1 0 -4\n", "1 0 0 0 0 0 0\n", "8 1 1\n1 0 0 0 0 0 1\n",
          "2 0 0 0 0 0 1 0 0 1 0 1 0 4\n", "6 1 1 0 0 0 -1 1 0 0 1\n", "7 0 0 1 2 2 0 0 0 1 0 0 0 2 1e-320 2\n"})
    {
        content.curves = "Curves 1\n" + std::string(curve);
        EXPECT_FALSE(content.IsRestored()) << curve;
        content.curves = "Curves 1\n8 0 1\n" + std::string(curve);
        EXPECT_FALSE(content.IsRestored()) << curve;
    }
}

TEST(HostileShapes, KnotsAndDegreesFitThePoles)
{
    TextContent content;
    auto const isCurve = [&](std::string const& curve)
    {
        content.curves = "Curves 1\n7 0 " + curve + "\n";
        return content.IsRestored();
    };
    EXPECT_TRUE(isCurve("0 1 2 2 0 0 0 1 0 0 0 2 1 2"));
    EXPECT_FALSE(isCurve("0 2 2 2 0 0 0 1 0 0 0 2 1 2"));
    EXPECT_FALSE(isCurve("0 1 2 2 0 0 0 1 0 0 0 2147483647 1 2147483647"));
    EXPECT_FALSE(isCurve("0 1 2 2 0 0 0 1 0 0 1 2 0 2"));
    EXPECT_FALSE(isCurve("0 1 2147483647 2 0 0 0 1 0 0 0 2 1 2"));
    EXPECT_FALSE(isCurve("0 26 27 2 " + Repeated("0 0 0 ", 27) + "0 27 1 27"));
}

TEST(HostileShapes, ChainsNameElementaryLocationsInTheirShortForm)
{
    TextContent content;
    auto const areLocations = [&](std::string const& chains, int count)
    {
        content.locations = "Locations " + std::to_string(2 + count) + "\n" + kMove + kMove + chains;
        return content.IsRestored();
    };
    EXPECT_TRUE(areLocations("2  1 3 2 -1 0\n2  2 1 1 1 0\n", 2));
    EXPECT_FALSE(areLocations("2  1 2147483647 0\n", 1));
    EXPECT_FALSE(areLocations("2  1 1 0\n", 1)) << "the same as the first";
    EXPECT_FALSE(areLocations("2  1 2 0\n2  1 2 0\n", 2)) << "twice the same";
    EXPECT_FALSE(areLocations("2  1 1 1 -1 0\n", 1)) << "nothing";
    EXPECT_FALSE(areLocations("2  0\n", 1));
    EXPECT_FALSE(areLocations("2  3 1 0\n", 1)) << "itself";
    EXPECT_FALSE(areLocations("2  1 2 2 2 0\n2  3 2 0\n", 2)) << "a chain of chains";
    EXPECT_TRUE(areLocations("2  " + Repeated("1 1 2 1 ", 500) + "0\n", 1));
    EXPECT_FALSE(areLocations("2  " + Repeated("1 1 2 1 ", 100'000) + "0\n", 1));
    std::string many;
    for (int power = 2; power < 100; ++power)
        many += "2  " + Repeated("1 1 2 1 ", 2000) + "1 " + std::to_string(power) + " 0\n";
    EXPECT_FALSE(areLocations(many, 98));
}

TEST(HostileShapes, AnEdgeIsNotFarLongerOnASurfaceThanInSpace)
{
    TextContent content;
    content.surfaces = kPlane;
    content.curves2d = "Curve2ds 1\n1 0 0 1 0\n";
    content.curves = "Curves 1\n1 0 0 0 1 0 0\n";
    for (auto const& [representations, isRestored] : {std::pair("1  1 0 0 1\n2  1 1 0 0 1\n", true),
                                                      {"1  1 0 0 1\n2  1 1 0 -900000 0\n", true},
                                                      {"1  1 0 0 1e50\n2  1 1 0 0 1e50\n", true},
                                                      {"1  1 0 0 1\n2  1 1 0 -1100000 0\n", false},
                                                      {"1  1 0 0 1\n2  1 1 0 -5e303 2\n", false},
                                                      {"2  1 1 0 -1e308 1e308\n1  1 0 0 1\n", false}})
    {
        content.shapes = EdgeWith(representations);
        EXPECT_EQ(content.IsRestored(), isRestored) << representations;
    }
}

TEST(HostileShapes, ARangeIsNotFarFromThePeriodOfACurve)
{
    TextContent content;
    content.surfaces = kPlane;
    content.curves2d = "Curve2ds 1\n7 0 1 1 2 3 0 0 1 0 0 1 0.5 1 1 1\n";
    for (auto const& [range, isRestored] : {std::pair("0 0.5", true),
                                            {"-5 -3.5", true},
                                            {"6 8", true},
                                            {"0 2.1", false},
                                            {"-11 -10.5", false},
                                            {"0 1e300", false},
                                            {"-1e300 0", false},
                                            {"0 nan", false}})
    {
        content.shapes = EdgeWith("2  1 1 0 " + std::string(range) + "\n");
        EXPECT_EQ(content.IsRestored(), isRestored) << range;
    }
}

TEST(HostileShapes, AnEdgeHasNotEndlessRepresentations)
{
    TextContent content;
    content.curves = "Curves 1\n" + std::string(kCircle);
    content.shapes = EdgeWith(Repeated("1  1 0 0 1\n", 1000));
    EXPECT_TRUE(content.IsRestored());
    content.shapes = EdgeWith(Repeated("1  1 0 0 1\n", 200'000));
    EXPECT_FALSE(content.IsRestored());
}

TEST(HostileShapes, PolygonsAndTrianglesHaveTheNodesThatThereAre)
{
    TextContent content;
    auto const isRestored = [&](char const* polygon, char const* triangle)
    {
        content.nodes = "PolygonOnTriangulations 1\n2 " + std::string(polygon) + " \np 0.1 0 \n";
        content.triangulations = "Triangulations 1\n3 1 0 0 0.1\n0 0 0 1 0 0 0 1 0 " + std::string(triangle) + " \n";
        content.shapes = EdgeWith("6  1 1 0\n");
        return content.IsRestored();
    };
    EXPECT_TRUE(isRestored("1 3", "1 2 3"));
    EXPECT_FALSE(isRestored("1 4", "1 2 3"));
    EXPECT_FALSE(isRestored("0 1", "1 2 3"));
    EXPECT_FALSE(isRestored("1 3", "1 2 4"));
    EXPECT_FALSE(isRestored("1 3", "-1 2 3"));
}

// Compounds of two of the one before.
TEST(HostileShapes, ShapesDoNotUnfoldWithoutEnd)
{
    TextContent content;
    auto const doubled = [&](int times)
    {
        int const count = times + 3;
        int left = count;
        auto const compoundOf = [&](int copies)
        { return "Co\n\n1100000\n" + Repeated("+" + std::to_string(left--) + " 0 ", copies) + "*\n"; };
        content.shapes = "TShapes " + std::to_string(count) + "\nVe\n1e-07\n0 0 0\n0 0\n\n0101101\n*\n" + compoundOf(1);
        for (int i = 0; i < times; ++i)
            content.shapes += compoundOf(2);
        content.shapes += compoundOf(1);
        return content.IsRestored();
    };
    EXPECT_TRUE(doubled(10));
    EXPECT_FALSE(doubled(100));
}

TEST(HostileShapes, TheCompoundOfAllStandsWhereItWasMade)
{
    TextContent content;
    content.locations = "Locations 1\n" + std::string(kMove);
    EXPECT_TRUE(content.IsRestored());
    for (char const* const root : {"+1 1 ", "+2 0 ", "+3 0 ", "+0 0 ", "*"})
    {
        content.root = root;
        EXPECT_FALSE(content.IsRestored()) << root;
    }
}

}  // namespace

}  // namespace KVR::Test
