#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "geometry/XMLWorkAxis.h"
#include "geometry/XMLWorkPlane.h"
#include "geometry/XMLWorkPoint.h"
#include "tests/structure/Answers.h"
#include "tests/support/ReadElement.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using Triple = std::array<double, 3>;

template <class Feature>
struct FeatureElement
{
    FeatureElement(std::string const& name, std::string const& children, std::string const& attributes = "")
        : scene(InScene("<" + name + " ID='w' " + attributes + ">" + children + "</" + name + ">")),
          feature(scene.Begin().Get<Feature>("w"))
    {
    }
    TestScene scene;
    Feature& feature;
};

struct AxisElement : FeatureElement<IWorkAxis>
{
    explicit AxisElement(std::string const& children) : FeatureElement("IWorkAxis", children) {}
};
struct PlaneElement : FeatureElement<IWorkPlane>
{
    explicit PlaneElement(std::string const& children) : FeatureElement("IWorkPlane", children) {}
};
struct PointElement : FeatureElement<IWorkPoint>
{
    explicit PointElement(std::string const& children) : FeatureElement("IWorkPoint", children) {}
};

template <class Feature, class Status>
Triple Ask(Feature const& feature, Status (Feature::*getter)(double&, double&, double&) const)
{
    Triple triple = {-1, -2, -3};
    (feature.*getter)(triple[0], triple[1], triple[2]);
    return triple;
}

constexpr Triple kAlone = {-1, -2, -3};

std::optional<std::array<double, 6>> RangeOf(IWorkPlane const& plane)
{
    std::array<double, 6> r{};
    if (plane.DisplayRange(r[0], r[1], r[2], r[3], r[4], r[5]) != kIsValueSpecified_Yes)
        return {};
    return r;
}

// What is common, asked of each of the three.
class WorkFeature : public testing::TestWithParam<char const*>
{
protected:
    FeatureElement<IWorkFeature> Element(std::string const& children, std::string const& attributes = "")
    {
        return {GetParam(), children, attributes};
    }
};

}  // namespace

TEST_P(WorkFeature, AttributesKeysUnitsAndStylesAreRead)
{
    auto const test = Element(
        "<ChangeKey>k</ChangeKey><Unit LengthUnit='kUnitType_Inch' DisplayAngleUnit='kUnitType_Degree' "
        "DisplayLengthUnit='kUnitType_Foot'/><Styles><StyleRef ID='s'/><StyleRef ID='s'/></Styles>",
        "Label='L' VersionPersistentId='v'");
    EXPECT_EQ(Text(test.feature.Label()), "L");
    EXPECT_EQ(TextOf(test.feature, &IObject::VersionPersistentId), "v");
    EXPECT_EQ(ChangeKeyOf(test.feature), "k");
    EXPECT_EQ(ChangeKeyOf(test.feature, static_cast<SnapshotVersionEnum>(1)), "k") << "whatever the version";
    EXPECT_THAT(Ids(test.feature.Styles()), ElementsAre("s"));
}

TEST_P(WorkFeature, OnlyTheLengthUnitIsGivenOut)
{
    auto const test = Element(
        "<Unit LengthUnit='kUnitType_Inch' DisplayAngleUnit='kUnitType_Degree' DisplayLengthUnit='kUnitType_Foot'/>");
    EXPECT_EQ(UnitsOf(test.feature), (UnitAnswers{kUnitType_Inch, std::nullopt, std::nullopt}));
    EXPECT_EQ(UnitsOf(Element("").feature), (UnitAnswers{kUnitType_Unknown, std::nullopt, std::nullopt}));
}

TEST_P(WorkFeature, AnEmptyPersistentIdAndAMissingKeyAreNotSpecified)
{
    auto const test = Element("<changekey>k</changekey>", "VersionPersistentId=''");
    EXPECT_EQ(TextOf(test.feature, &IObject::VersionPersistentId), std::nullopt);
    for (int const version : {0, 1, 77})
        EXPECT_EQ(ChangeKeyOf(test.feature, static_cast<SnapshotVersionEnum>(version)), std::nullopt) << version;
    EXPECT_EQ(ChangeKeyOf(Element("<ChangeKey/>").feature), "");
}

TEST_P(WorkFeature, StylesAreExactInCase)
{
    EXPECT_TRUE(Element("<STYLES><StyleRef ID='s'/></STYLES>").feature.Styles().IsEmpty());
}

TEST_P(WorkFeature, NetStylesPropertiesAndExtensionDataAreTheFrameworks)
{
    auto const test = Element(
        "<NetStyles><StyleRef ID='s'/></NetStyles><ExtensionData TypeId='t'/><Tolerance AngularTolerance='1' "
        "LinearTolerance='1' ParamTolerance='1'/>");
    EXPECT_TRUE(test.feature.NetStyles().IsEmpty());
    EXPECT_TRUE(test.feature.PropertyIds().IsEmpty());
    EXPECT_EQ(ExtensionTextOf(test.feature, "t"), std::nullopt);
    EXPECT_EQ(test.feature.AngularTolerance(), -1.0);
    EXPECT_EQ(test.feature.LinearTolerance(), -1.0);
    EXPECT_EQ(test.feature.ParamTolerance(), -1.0);
    EXPECT_FALSE(test.feature.IsThreadSafe());
}

TEST_P(WorkFeature, AnIdentityTransformTakesAnEarlierOneAway)
{
    std::string const move = "<Transform>" + MoveText(4) + "</Transform>";
    auto const moved = Element(move);
    ASSERT_NE(moved.feature.Transform(), nullptr);
    EXPECT_EQ(moved.feature.Transform()->Element(0, 3), 4.0);
    EXPECT_EQ(Element("").feature.Transform(), nullptr);
    EXPECT_EQ(Element(move + "<Transform>" + MoveText(0) + "</Transform>").feature.Transform(), nullptr);
}

TEST_P(WorkFeature, ItsIdAndItsStylesAreMapped)
{
    TestScene scene(
        InScene(std::string("<") + GetParam() + " ID='w'><Styles><StyleRef ID='s'/></Styles></" + GetParam() + ">"));
    EXPECT_THAT(Ids(scene.WithPrefix("n").Begin().Get<IWorkFeature>("n1").Styles()), ElementsAre("n2"));
}

INSTANTIATE_TEST_SUITE_P(Each, WorkFeature, testing::Values("IWorkAxis", "IWorkPlane", "IWorkPoint"),
                         [](auto const& test) { return std::string(test.param); });

TEST(XMLWorkAxis, ReadsItsThreeTriples)
{
    AxisElement const test(
        "<StartPoint X='1' Y='2' Z='3'/><EndPoint X='4' Y='5' Z='6'/><Axis X='7' Y='8' Z='9'/><WorkPoint X='0'/>");
    EXPECT_EQ(Ask(test.feature, &IWorkAxis::StartPoint), (Triple{1, 2, 3}));
    EXPECT_EQ(Ask(test.feature, &IWorkAxis::EndPoint), (Triple{4, 5, 6}));
    EXPECT_EQ(Ask(test.feature, &IWorkAxis::Axis), (Triple{7, 8, 9}));
}

TEST(XMLWorkAxis, WhatItsElementsDoNotSayIsZero)
{
    AxisElement const test("<Axis X='1' Y='b'/><startpoint X='1' Y='1' Z='1'/>");
    EXPECT_EQ(Ask(test.feature, &IWorkAxis::StartPoint), (Triple{0, 0, 0}));
    EXPECT_EQ(Ask(test.feature, &IWorkAxis::EndPoint), (Triple{0, 0, 0}));
    EXPECT_EQ(Ask(test.feature, &IWorkAxis::Axis), (Triple{1, 0, 0}));
}

// The first element of a name says all three, the second one of them.
std::string Twice(std::string const& name)
{
    return "<" + name + " X='1' Y='2' Z='3'/><" + name + " Y='9'/>";
}

constexpr Triple kSecond = {0, 9, 0};

TEST(XMLWorkAxis, OfARepeatedElementTheLastAloneCounts)
{
    AxisElement const test(Twice("StartPoint") + Twice("EndPoint") + Twice("Axis"));
    EXPECT_EQ(Ask(test.feature, &IWorkAxis::StartPoint), kSecond);
    EXPECT_EQ(Ask(test.feature, &IWorkAxis::EndPoint), kSecond);
    EXPECT_EQ(Ask(test.feature, &IWorkAxis::Axis), kSecond);
}

TEST(XMLWorkPoint, OfARepeatedElementTheLastAloneCounts)
{
    EXPECT_EQ(Ask(PointElement(Twice("WorkPoint")).feature, &IWorkPoint::Position), kSecond);
    EXPECT_EQ(Ask(PointElement("<WorkPoint X='1'/><WorkPoint X='b'/>").feature, &IWorkPoint::Position), Triple());
}

TEST(XMLWorkPlane, OfARepeatedElementTheLastAloneCounts)
{
    PlaneElement const test(Twice("Origin") + Twice("Normal") + Twice("Reference") + "<DisplayRange>" +
                            Twice("MinPoint") + Twice("MaxPoint") + "</DisplayRange>");
    EXPECT_EQ(Ask(test.feature, &IWorkPlane::Origin), kSecond);
    EXPECT_EQ(Ask(test.feature, &IWorkPlane::Normal), kSecond);
    EXPECT_EQ(Ask(test.feature, &IWorkPlane::Reference), kSecond);
    EXPECT_EQ(RangeOf(test.feature), (std::array<double, 6>{0, 9, 0, 0, 9, 0}));
}

TEST(XMLWorkPlane, AnEmptyReferenceTakesAnEarlierOneAway)
{
    EXPECT_EQ(Ask(PlaneElement("<Reference X='1'/><Reference/>").feature, &IWorkPlane::Reference), kAlone);
}

TEST(XMLWorkPlane, ASecondDisplayRangeReplacesThePointsThatItHas)
{
    PlaneElement const test(
        "<DisplayRange><MinPoint X='1' Y='2' Z='3'/><MaxPoint X='4' Y='5' Z='6'/></DisplayRange>"
        "<DisplayRange><MinPoint X='7'/></DisplayRange>");
    EXPECT_EQ(RangeOf(test.feature), (std::array<double, 6>{7, 0, 0, 4, 5, 6}));
}

TEST(XMLWorkPoint, ReadsItsPosition)
{
    EXPECT_EQ(Ask(PointElement("<WorkPoint X='1' Y='2' Z='3'/>").feature, &IWorkPoint::Position), (Triple{1, 2, 3}));
    EXPECT_EQ(Ask(PointElement("<Point X='1' Y='2' Z='3'/>").feature, &IWorkPoint::Position), (Triple{0, 0, 0}));
}

TEST(XMLWorkPlane, ReadsOriginNormalAndReference)
{
    PlaneElement const test("<Origin X='1' Y='2' Z='3'/><Normal X='0' Y='0' Z='2'/><Reference X='1e-3' Y='0' Z='0'/>");
    EXPECT_EQ(Ask(test.feature, &IWorkPlane::Origin), (Triple{1, 2, 3}));
    EXPECT_EQ(Ask(test.feature, &IWorkPlane::Normal), (Triple{0, 0, 2})) << "as the scene says it";
    EXPECT_EQ(Ask(test.feature, &IWorkPlane::Reference), (Triple{1e-3, 0, 0}));
}

TEST(XMLWorkPlane, WithoutAReferenceItReportsNone)
{
    PlaneElement const test("<Origin X='1'/>");
    EXPECT_EQ(Ask(test.feature, &IWorkPlane::Reference), kAlone);
    EXPECT_EQ(Ask(test.feature, &IWorkPlane::Normal), (Triple{0, 0, 0}));
}

TEST(XMLWorkPlane, AZeroReferenceIsNone)
{
    for (char const* const zero : {"<Reference/>", "<Reference X='0' Y='0' Z='0'/>", "<Reference X='1e-12'/>"})
    {
        PlaneElement const test(zero);
        double x = 5;
        double y = 6;
        double z = 7;
        EXPECT_EQ(test.feature.Reference(x, y, z), kIsValueSpecified_No) << zero;
        EXPECT_EQ((Triple{x, y, z}), (Triple{5, 6, 7})) << zero;
    }
    double x = 0;
    EXPECT_EQ(PlaneElement("<Reference X='2e-12'/>").feature.Reference(x, x, x), kIsValueSpecified_Yes);
}

TEST(XMLWorkPlane, WithoutADisplayRangeItReportsNone)
{
    EXPECT_EQ(RangeOf(PlaneElement("").feature), std::nullopt);
    EXPECT_EQ(RangeOf(PlaneElement("<displayrange><MinPoint X='1'/></displayrange>").feature), std::nullopt);
}

TEST(XMLWorkPlane, ADisplayRangeHasItsTwoPoints)
{
    EXPECT_EQ(RangeOf(PlaneElement("<DisplayRange><MinPoint X='1' Y='2' Z='3'/><MaxPoint X='4' Y='5' Z='6'/>"
                                   "</DisplayRange>")
                          .feature),
              (std::array<double, 6>{1, 2, 3, 4, 5, 6}));
}

TEST(XMLWorkPlane, AnEmptyDisplayRangeIsNoneAndOneOfBlanksIsARange)
{
    EXPECT_EQ(RangeOf(PlaneElement("<DisplayRange/>").feature), std::nullopt);
    std::array<double, 6> const zeros{};
    EXPECT_EQ(RangeOf(PlaneElement("<DisplayRange> </DisplayRange>").feature), zeros);
    EXPECT_EQ(RangeOf(PlaneElement("<DisplayRange><Other/></DisplayRange>").feature), zeros);
}

TEST(XMLWorkPlane, ADisplayRangeOfOnePointReportsZeroForTheOther)
{
    EXPECT_EQ(RangeOf(PlaneElement("<DisplayRange><MinPoint X='1' Y='2' Z='3'/></DisplayRange>").feature),
              (std::array<double, 6>{1, 2, 3, 0, 0, 0}));
}

TEST(XMLWorkFeature, ANullNodeFails)
{
    ReadElement reading;
    EXPECT_FALSE(XMLWorkAxis(&reading.Producer()).ReadFromXML(nullptr));
    EXPECT_FALSE(XMLWorkPlane(&reading.Producer()).ReadFromXML(nullptr));
    EXPECT_FALSE(XMLWorkPoint(&reading.Producer()).ReadFromXML(nullptr));
}

}  // namespace KVR::Test
