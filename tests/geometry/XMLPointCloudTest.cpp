#include "geometry/XMLPointCloud.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/structure/Answers.h"
#include "tests/support/ReadElement.h"

namespace KVR::Test
{

namespace
{

using Point = std::array<double, 3>;

struct CloudElement
{
    explicit CloudElement(std::string const& children, std::string const& attributes = "")
        : scene(InScene("<IPointCloud ID='c' " + attributes + ">" + children + "</IPointCloud>")),
          cloud(scene.Begin().Get<IPointCloud>("c"))
    {
    }
    Point At(std::size_t index) const
    {
        Point point = {-1, -2, -3};
        cloud.Point(index, point.data(), &point[1], &point[2]);
        return point;
    }

    TestScene scene;
    IPointCloud& cloud;
};

std::string Coordinates(std::string const& text)
{
    return "<PointCloud PointCloudCoordinates='" + text + "'/>";
}

}  // namespace

TEST(XMLPointCloud, AnswersItsPointsInTheOrderOfTheText)
{
    CloudElement const test(Coordinates("0 0.5 -1 1e3 2 3"));
    ASSERT_EQ(test.cloud.PointCount(), 2U);
    EXPECT_EQ(test.At(0), (Point{0, 0.5, -1}));
    EXPECT_EQ(test.At(1), (Point{1000, 2, 3}));
}

TEST(XMLPointCloud, WithoutCoordinatesItHasNoPointAndLeavesTheArgumentsAlone)
{
    for (char const* const children :
         {"", "<PointCloud/>", "<PointCloud PointCloudCoordinates=''/>", "<pointcloud PointCloudCoordinates='1 2 3'/>",
          "<PointCloud pointcloudcoordinates='1 2 3'/>", "<PointCloud>1 2 3</PointCloud>"})
    {
        CloudElement const test(children);
        EXPECT_EQ(test.cloud.PointCount(), 0U) << children;
        EXPECT_EQ(test.At(0), (Point{-1, -2, -3})) << children;
    }
}

TEST(XMLPointCloud, AnIndexAtOrBeyondTheCountLeavesTheArgumentsAlone)
{
    CloudElement const test(Coordinates("1 2 3 4 5"));
    ASSERT_EQ(test.cloud.PointCount(), 1U) << "the last two words make no point";
    EXPECT_EQ(test.At(1), (Point{-1, -2, -3}));
    EXPECT_EQ(test.At(~std::size_t{0}), (Point{-1, -2, -3}));
    EXPECT_EQ(test.At(0), (Point{1, 2, 3}));
}

TEST(XMLPointCloud, ABadNumberLeavesItsArgumentAlone)
{
    CloudElement const test(Coordinates("1 x 3 4,5 0x1 6"));
    EXPECT_EQ(test.At(0), (Point{1, -2, 3}));
    EXPECT_EQ(test.At(1), (Point{-1, -2, 6}));
}

TEST(XMLPointCloud, RepeatedBlanksAndLineEndsDoNoHarm)
{
    EXPECT_EQ(CloudElement(Coordinates("  1   2\n3&#10; ")).At(0), (Point{1, 2, 3}));
    CloudElement const joined(Coordinates("1&#10;2 3 4"));
    EXPECT_EQ(joined.At(0), (Point{-1, 3, 4})) << "a line end that is no blank does not separate";
}

TEST(XMLPointCloud, FurtherPointCloudElementsAppend)
{
    CloudElement const test(Coordinates("1 2") + Coordinates("3 4 5") + Coordinates("6"));
    ASSERT_EQ(test.cloud.PointCount(), 2U);
    EXPECT_EQ(test.At(0), (Point{1, 2, 3}));
    EXPECT_EQ(test.At(1), (Point{4, 5, 6}));
}

TEST(XMLPointCloud, RepeatedQuestionsHaveTheSameAnswer)
{
    CloudElement const test(Coordinates("0.1 0.2 0.3"));
    EXPECT_EQ(test.At(0), (Point{0.1, 0.2, 0.3}));
    EXPECT_EQ(test.At(0), (Point{0.1, 0.2, 0.3}));
}

TEST(XMLPointCloud, LengthUnitsAreAnsweredAndTheDisplayAngleUnitNever)
{
    EXPECT_EQ(UnitsOf(CloudElement("<Unit LengthUnit='kUnitType_Inch' DisplayAngleUnit='kUnitType_Degree' "
                                   "DisplayLengthUnit='kUnitType_Foot'/>")
                          .cloud),
              (UnitAnswers{kUnitType_Inch, std::nullopt, kUnitType_Foot}));
    EXPECT_EQ(UnitsOf(CloudElement("").cloud), (UnitAnswers{kUnitType_Unknown, std::nullopt, kUnitType_Unknown}));
}

TEST(XMLPointCloud, KeysStylesExtensionDataAndTolerancesAreNotRead)
{
    CloudElement const test(
        "<ChangeKey>k</ChangeKey><ExtensionData TypeId='t'/><Styles><StyleRef ID='s'/></Styles>"
        "<NetStyles><StyleRef ID='s'/></NetStyles><Tolerance AngularTolerance='1' LinearTolerance='1' "
        "ParamTolerance='1'/>",
        "Label='L' VersionPersistentId='v'");
    EXPECT_EQ(Text(test.cloud.Label()), "L");
    EXPECT_EQ(ChangeKeyOf(test.cloud), std::nullopt);
    EXPECT_EQ(TextOf(test.cloud, &IObject::VersionPersistentId), std::nullopt);
    EXPECT_EQ(ExtensionTextOf(test.cloud, "t"), std::nullopt);
    EXPECT_TRUE(test.cloud.Styles().IsEmpty());
    EXPECT_TRUE(test.cloud.NetStyles().IsEmpty());
    EXPECT_EQ(test.cloud.AngularTolerance(), -1.0);
    EXPECT_EQ(test.cloud.LinearTolerance(), -1.0);
    EXPECT_EQ(test.cloud.ParamTolerance(), -1.0);
}

TEST(XMLPointCloud, ATransformIsKeptUnlessItIsTheIdentity)
{
    CloudElement const moved("<Transform>" + MoveText(3) + "</Transform>");
    ASSERT_NE(moved.cloud.Transform(), nullptr);
    EXPECT_EQ(moved.cloud.Transform()->Element(0, 3), 3.0);
    moved.cloud.SetTransform(Matrix3d());
    EXPECT_EQ(moved.cloud.Transform(), nullptr);
}

TEST(XMLPointCloud, ANullNodeFails)
{
    ReadElement reading;
    XMLPointCloud cloud(&reading.Producer());
    EXPECT_FALSE(cloud.ReadFromXML(nullptr));
    EXPECT_EQ(cloud.PointCount(), 0U);
}

TEST(XMLPointCloud, ItsIdIsMapped)
{
    TestScene scene(InScene("<IPointCloud ID='c'>" + Coordinates("1 2 3") + "</IPointCloud>"));
    EXPECT_EQ(scene.WithPrefix("n").Begin().Get<IPointCloud>("n1").PointCount(), 1U);
}

TEST(XMLPointCloud, AMillionPointsAreRead)
{
    std::string text;
    for (int i = 0; i < 1000000; ++i)
        text += std::to_string(i) + " " + std::to_string(i) + ".5 -" + std::to_string(i) + " ";
    CloudElement const test(Coordinates(text));
    ASSERT_EQ(test.cloud.PointCount(), 1000000U);
    for (std::size_t const index : {std::size_t{0}, std::size_t{499999}, std::size_t{999999}})
    {
        auto const value = static_cast<double>(index);
        EXPECT_EQ(test.At(index), (Point{value, value + 0.5, -value}));
    }
}

}  // namespace KVR::Test
