#include "framework/api/ExtensionDataContent.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace
{

using namespace KVR;

ExtensionDataContent Filled()
{
    ExtensionDataContent content;
    content.SetTypeId("type");
    content.SetData("data");
    IdSet path;
    path.AddWithoutUniquenessCheck("i1");
    path.AddWithoutUniquenessCheck("i1");
    content.SetObjectPath(path, ExtensionDataContent::kObjectPathType_Occurrence);
    content.SetLengthUnit(kUnitType_Inch);
    Matrix3d transform;
    transform.SetElement(0, 3, 2.5);
    content.SetTransform(transform);
    return content;
}

void ExpectFilled(ExtensionDataContent const& content)
{
    EXPECT_EQ(content.TypeId(), UTF8String("type"));
    EXPECT_EQ(content.Data(), UTF8String("data"));
    EXPECT_EQ(content.ObjectPath().Size(), 2U);
    EXPECT_EQ(content.ObjectPathType(), ExtensionDataContent::kObjectPathType_Occurrence);
    UnitTypeEnum unit = kUnitType_Unknown;
    EXPECT_EQ(content.LengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Inch);
    Matrix3d transform;
    EXPECT_EQ(content.Transform(transform), kIsValueSpecified_Yes);
    EXPECT_EQ(transform.Element(0, 3), 2.5);
}

TEST(ExtensionDataContent, HasNothingUntilSet)
{
    ExtensionDataContent const content;
    EXPECT_TRUE(content.TypeId().IsEmpty());
    EXPECT_TRUE(content.Data().IsEmpty());
    EXPECT_TRUE(content.ObjectPath().IsEmpty());
    UnitTypeEnum unit = kUnitType_Foot;
    EXPECT_EQ(content.LengthUnit(unit), kIsValueSpecified_No);
    EXPECT_EQ(unit, kUnitType_Foot);
    Matrix3d transform;
    transform.SetElement(1, 1, 9.0);
    EXPECT_EQ(content.Transform(transform), kIsValueSpecified_No);
    EXPECT_EQ(transform.Element(1, 1), 9.0);
}

TEST(ExtensionDataContent, AnswersWhatWasSet)
{
    ExpectFilled(Filled());
}

TEST(ExtensionDataContent, AnIdentityAndAnUnknownUnitThatWereSetCount)
{
    ExtensionDataContent content;
    content.SetTransform(Matrix3d());
    content.SetLengthUnit(kUnitType_Unknown);
    Matrix3d transform;
    transform.SetElement(1, 1, 9.0);
    UnitTypeEnum unit = kUnitType_Foot;
    EXPECT_EQ(content.Transform(transform), kIsValueSpecified_Yes);
    EXPECT_TRUE(transform.IsIdentity());
    EXPECT_EQ(content.LengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Unknown);
}

TEST(ExtensionDataContent, CopiesHoldEverythingAndOutliveTheOriginal)
{
    auto original = std::make_unique<ExtensionDataContent>(Filled());
    ExtensionDataContent const copy(*original);
    ExtensionDataContent assigned;
    assigned = *original;
    original->SetTransform(Matrix3d());
    original.reset();
    ExpectFilled(copy);
    ExpectFilled(assigned);
}

TEST(ExtensionDataContent, ACopyOfAnEmptyOneReplacesWhatWasThere)
{
    ExtensionDataContent content = Filled();
    ExtensionDataContent const empty;
    content = empty;
    EXPECT_TRUE(content.TypeId().IsEmpty());
    Matrix3d transform;
    UnitTypeEnum unit = kUnitType_Unknown;
    EXPECT_EQ(content.Transform(transform), kIsValueSpecified_No);
    EXPECT_EQ(content.LengthUnit(unit), kIsValueSpecified_No);
}

TEST(ExtensionDataContent, IsMovedAndAssignedToItself)
{
    ExtensionDataContent content = Filled();
    ExtensionDataContent& same = content;
    content = same;
    ExpectFilled(content);
    ExtensionDataContent moved(std::move(content));
    ExpectFilled(moved);
    ExtensionDataContent assigned;
    assigned = std::move(moved);
    ExpectFilled(assigned);
}

}  // namespace
