#include "readers/CoordinateReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using Triple = std::vector<double>;

Triple Xyz(std::string const& element, Triple from = {7.0, 8.0, 9.0})
{
    ParsedDocument const document(element);
    ReadXYZ(document.Root(), from[0], from[1], from[2]);
    return from;
}

bool XyzChecked(std::string const& element, Triple& out)
{
    ParsedDocument const document(element);
    return ReadXYZChecked(document.Root(), out[0], out[1], out[2]);
}

Plane PlaneOf(std::string const& element)
{
    ParsedDocument const document(element);
    // Something that a reader must replace.
    Plane plane(Position(9, 9, 9), UnitVector(9, 9, 9), UnitVector(9, 9, 9));
    ReadPlane(document.Root(), plane);
    return plane;
}

Triple OriginOf(Plane const& plane)
{
    return {plane.Origin().X(), plane.Origin().Y(), plane.Origin().Z()};
}
Triple Components(Vector const& vector)
{
    return {vector[0], vector[1], vector[2]};
}

}  // namespace

TEST(ReadXYZ, TakesTheThreeAttributesOfAnElementOfAnyName)
{
    EXPECT_EQ(Xyz(R"(<StartPoint X="1" Y="-2.5" Z="3e2"/>)"), (Triple{1.0, -2.5, 300.0}));
    EXPECT_EQ(Xyz(R"(<anything Z=" 3 " Y="+2" X="1.0"/>)"), (Triple{1.0, 2.0, 3.0}));
}

TEST(ReadXYZ, LeavesACoordinateThatIsAbsentOrNoNumberAsTheCallerSetIt)
{
    EXPECT_EQ(Xyz(R"(<P Y="2"/>)"), (Triple{7.0, 2.0, 9.0}));
    EXPECT_EQ(Xyz(R"(<P X="" Y="two" Z="3"/>)"), (Triple{7.0, 8.0, 3.0}));
    EXPECT_EQ(Xyz(R"(<P X="1,5" Y="nan" Z="inf"/>)"), (Triple{7.0, 8.0, 9.0}));
    EXPECT_EQ(Xyz(R"(<P X="0x10" Y="1e999" Z="1 2"/>)"), (Triple{7.0, 8.0, 9.0}));
}

TEST(ReadXYZ, TakesALowerCaseXForNoX)
{
    EXPECT_EQ(Xyz(R"(<P x="1" y="2" z="3"/>)"), (Triple{7.0, 8.0, 9.0}));
}

TEST(ReadXYZ, IsNotMisledByANullNodeOrOneThatIsNoElement)
{
    Triple out{7.0, 8.0, 9.0};
    ReadXYZ(nullptr, out[0], out[1], out[2]);
    ParsedDocument const document(R"(<Scene><?P X="1" Y="2" Z="3"?></Scene>)");
    ReadXYZ(document.FirstNamed(u"P"), out[0], out[1], out[2]);
    EXPECT_EQ(out, (Triple{7.0, 8.0, 9.0}));
}

TEST(ReadXYZChecked, AnswersFalseForANullNodeAndOtherwiseWhetherZConverted)
{
    Triple out{7.0, 8.0, 9.0};
    EXPECT_FALSE(ReadXYZChecked(nullptr, out[0], out[1], out[2]));
    EXPECT_EQ(out, (Triple{7.0, 8.0, 9.0}));
    EXPECT_TRUE(XyzChecked(R"(<P X="1" Y="2" Z="3"/>)", out));
    EXPECT_EQ(out, (Triple{1.0, 2.0, 3.0}));
    // The first two do not count.
    EXPECT_TRUE(XyzChecked(R"(<P Y="bad" Z="6"/>)", out));
    EXPECT_EQ(out, (Triple{1.0, 2.0, 6.0}));
    EXPECT_FALSE(XyzChecked(R"(<P X="4" Y="5"/>)", out));
    EXPECT_FALSE(XyzChecked(R"(<P Z="bad"/>)", out));
    EXPECT_EQ(out, (Triple{4.0, 5.0, 6.0}));
}

TEST(ReadPlane, TakesOriginNormalAndReference)
{
    Plane const plane = PlaneOf(R"(<Plane><Origin X="1" Y="2" Z="3"/><Normal X="0" Y="0" Z="2"/>
        <Reference X="1" Y="0" Z="0"/></Plane>)");
    EXPECT_EQ(OriginOf(plane), (Triple{1, 2, 3}));
    EXPECT_EQ(Components(plane.Normal()), (Triple{0, 0, 2}));
    UnitVector reference;
    ASSERT_EQ(plane.ReferenceDirection(reference), kIsValueSpecified_Yes);
    EXPECT_EQ(Components(reference), (Triple{1, 0, 0}));
}

TEST(ReadPlane, GivesAPlaneWithoutReferenceWhenNoneWasSeen)
{
    Plane const plane = PlaneOf(R"(<Plane><Normal Y="1"/><Origin X="1" Z="3"/></Plane>)");
    EXPECT_EQ(OriginOf(plane), (Triple{1, 0, 3})) << "an absent coordinate is 0";
    EXPECT_EQ(Components(plane.Normal()), (Triple{0, 1, 0}));
    UnitVector reference;
    EXPECT_EQ(plane.ReferenceDirection(reference), kIsValueSpecified_No);
}

TEST(ReadPlane, OfAnElementWithoutChildrenHasTheDefaultPositionAndNormal)
{
    Plane const plane = PlaneOf("<Plane/>");
    EXPECT_EQ(OriginOf(plane), OriginOf(Plane()));
    EXPECT_EQ(Components(plane.Normal()), Components(Plane().Normal()));
    UnitVector reference;
    EXPECT_EQ(plane.ReferenceDirection(reference), kIsValueSpecified_No);
}

TEST(ReadPlane, LetsARepeatedChildOverwriteWhollyAndPassesOverOthers)
{
    Plane const plane = PlaneOf(R"(<Plane>text<Origin X="1" Y="1" Z="1"/><origin X="5"/><Other X="5"/><?Origin X="6"?>
        <Origin Y="2"/><Normal X="1"/><Reference X="1"/><Reference/><Normal Z="1"/></Plane>)");
    EXPECT_EQ(OriginOf(plane), (Triple{0, 2, 0})) << "coordinates start from 0 in each element";
    EXPECT_EQ(Components(plane.Normal()), (Triple{0, 0, 1}));
    UnitVector reference;
    ASSERT_EQ(plane.ReferenceDirection(reference), kIsValueSpecified_Yes) << "a reference without numbers was seen";
    EXPECT_EQ(Components(reference), (Triple{0, 0, 0}));
}

TEST(ReadPlane, OfANullNodeHasNoEffect)
{
    Plane plane(Position(1, 2, 3), UnitVector(0, 0, 1));
    ReadPlane(nullptr, plane);
    EXPECT_EQ(OriginOf(plane), (Triple{1, 2, 3}));
}

}  // namespace KVR::Test
