#include "framework/api/TypesafeId.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

#include "tests/framework/api/GeometryFakes.h"

namespace
{

using namespace KVR;

static_assert(std::is_base_of_v<TypesafeId, RootId> && !std::is_base_of_v<ChildId, RootId>);
static_assert(!std::is_copy_constructible_v<TypesafeId>, "an id of no family is not passed about");
static_assert(!std::is_copy_constructible_v<ChildId>);
static_assert(!std::is_convertible_v<IGeometry const*, AssemblyChildId>);
static_assert(!std::is_convertible_v<UTF8String, PartChildId> && !std::is_constructible_v<PartChildId, UTF8String>,
              "an id of a family comes from an object");
static_assert(!std::is_constructible_v<PartChildId, IInstance const*>, "a part has no instances");

template <class Family>
class ChildIdFamily : public testing::Test
{
};

using Families = testing::Types<FileChildId, AssemblyChildId, PartChildId, InstanceChildId,
                                AssemblyFeatureOverrideChildId, AnnotationCalloutChildId,
                                AnnotationCalloutElementChildId, ExtensionGeometryChildId, GeometricSetChildId>;
TYPED_TEST_SUITE(ChildIdFamily, Families);

template <class Family>
Family Make(IComponent* component)
{
    if constexpr (std::is_same_v<Family, InstanceChildId>)
        return InstanceChildId(static_cast<IComponent const*>(component));
    else
        return Family::Create(component);
}

TYPED_TEST(ChildIdFamily, CarriesTheIdOfTheObject)
{
    FakePart part(UTF8String("part-7"));
    EXPECT_EQ(Make<TypeParam>(&part).Id(), UTF8String("part-7"));
}

TYPED_TEST(ChildIdFamily, IsEmptyForANullObject)
{
    EXPECT_TRUE(Make<TypeParam>(nullptr).Id().IsEmpty());
}

TYPED_TEST(ChildIdFamily, OutlivesTheObjectAndIsCopied)
{
    auto part = std::make_unique<FakePart>(UTF8String("part-7"));
    TypeParam const id = Make<TypeParam>(part.get());
    part.reset();
    TypeParam copy(id);
    EXPECT_EQ(copy.Id(), UTF8String("part-7"));
    copy = Make<TypeParam>(nullptr);
    EXPECT_TRUE(copy.Id().IsEmpty());
    EXPECT_EQ(id.Id(), UTF8String("part-7"));
}

TYPED_TEST(ChildIdFamily, IsAChildIdWithAVirtualDestructor)
{
    static_assert(std::is_base_of_v<ChildId, TypeParam>);
    static_assert(std::has_virtual_destructor_v<TypeParam>);
    static_assert(sizeof(TypeParam) <= sizeof(UTF8String) + sizeof(void*));
    FakePart part(UTF8String("p"));
    std::unique_ptr<TypesafeId const> const id = std::make_unique<TypeParam>(Make<TypeParam>(&part));
    EXPECT_EQ(id->Id(), UTF8String("p"));
}

template <class Family, class Interface>
void ExpectMadeFrom(Interface const& object, char const* id)
{
    EXPECT_EQ(Family(&object).Id(), UTF8String(id));
    EXPECT_TRUE(Family(static_cast<Interface const*>(nullptr)).Id().IsEmpty());
}

TEST(RootId, CarriesTheIdOfTheFile)
{
    FakeFile const file(UTF8String("root"));
    ExpectMadeFrom<RootId, IFile>(file, "root");
    RootId id(&file);
    RootId const copy(id);
    id = RootId(nullptr);
    EXPECT_TRUE(id.Id().IsEmpty());
    EXPECT_EQ(copy.Id(), UTF8String("root"));
}

TEST(AssemblyChildId, IsMadeFromEveryKindOfChild)
{
    ExpectMadeFrom<AssemblyChildId, IGeometry>(FakeBrep(UTF8String("brep")), "brep");
    ExpectMadeFrom<AssemblyChildId, IGeometricSet>(FakeGeometricSet(UTF8String("set")), "set");
    ExpectMadeFrom<AssemblyChildId, IInstance>(FakeInstance(UTF8String("instance")), "instance");
    ExpectMadeFrom<AssemblyChildId, IAnnotationCallout>(FakeAnnotationCallout(UTF8String("callout")), "callout");
    ExpectMadeFrom<AssemblyChildId, IAssemblyFeatureOverride>(FakeAssemblyFeatureOverride(UTF8String("override")),
                                                              "override");
}

TEST(PartChildId, IsMadeFromGeometryAndCallouts)
{
    ExpectMadeFrom<PartChildId, IGeometry>(FakeCurve(UTF8String("curve")), "curve");
    ExpectMadeFrom<PartChildId, IAnnotationCallout>(FakeAnnotationCallout(UTF8String("callout")), "callout");
}

TEST(InstanceChildId, IsMadeFromFilesAndComponents)
{
    ExpectMadeFrom<InstanceChildId, IFile>(FakeFile(UTF8String("file")), "file");
    ExpectMadeFrom<InstanceChildId, IComponent>(FakeAssembly(UTF8String("assembly")), "assembly");
    ExpectMadeFrom<InstanceChildId, IComponent>(FakePart(UTF8String("part")), "part");
}

}  // namespace
