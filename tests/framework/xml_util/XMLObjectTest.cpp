#include "framework/xml_util/XMLObject.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "framework/api/IObject.h"
#include "framework/xml_util/ObjectState.h"

namespace
{

using namespace KVR;

class Thing final : public ObjectState<IObject>
{
public:
    using ObjectState::ObjectState;

    void AcceptVisitor(ObjectVisitor*) override {}
    void AddPropertyId(UTF8String const& id) { m_propertyIds.AddWithoutUniquenessCheck(id); }
};

ExtensionDataContent Content(char const* typeId, char const* data)
{
    ExtensionDataContent content;
    content.SetTypeId(typeId);
    content.SetData(data);
    return content;
}

// The data that the object answers for a type, or "none".
std::string DataOf(IObject const& object, char const* typeId)
{
    ExtensionDataContent content = Content("former type", "former data");
    if (object.ExtensionDataByTypeId(typeId, content) == kIsValueSpecified_Yes)
    {
        EXPECT_EQ(content.TypeId(), UTF8String(typeId));
        return content.Data().Value();
    }
    EXPECT_EQ(content.TypeId(), UTF8String("former type"));
    EXPECT_EQ(content.Data(), UTF8String("former data"));
    return "none";
}

TEST(ObjectState, AnswersTheIdAndTheLabelThatItWasMadeWith)
{
    Thing const thing("p1", L"R\u00E4der");
    IObject const& object = thing;
    EXPECT_EQ(object.Id(), UTF8String("p1"));
    EXPECT_EQ(object.Label(), UTF16String(L"R\u00E4der"));
    Thing const nameless("", L"");
    EXPECT_TRUE(nameless.Id().IsEmpty());
    EXPECT_TRUE(nameless.Label().IsEmpty());
}

TEST(ObjectState, HasNothingElseToAnswerAtFirst)
{
    Thing const thing("p1", L"");
    UTF8String text("former");
    EXPECT_EQ(thing.ChangeKey(kSnapshotVersion_Current, text), kIsValueSpecified_No);
    EXPECT_EQ(thing.VersionPersistentId(text), kIsValueSpecified_No);
    EXPECT_EQ(text, UTF8String("former"));
    EXPECT_EQ(thing.PropertyIds().Size(), 0U);
    EXPECT_EQ(DataOf(thing, ""), "none");
}

TEST(ChangeKey, IsAnsweredWhateverTheVersion)
{
    Thing thing("p1", L"");
    thing.SetChangeKey(ChangeKeyText(u"key \u00E4"));
    for (int const version : {0, 1, 77})
    {
        UTF8String key;
        EXPECT_EQ(thing.ChangeKey(static_cast<SnapshotVersionEnum>(version), key), kIsValueSpecified_Yes);
        EXPECT_EQ(key, UTF8String("key \xC3\xA4"));
    }
}

TEST(ChangeKey, IsSpecifiedWhenItIsEmpty)
{
    Thing thing("p1", L"");
    thing.SetChangeKey(ChangeKeyText(u""));
    UTF8String key("former");
    EXPECT_EQ(thing.ChangeKey(kSnapshotVersion_Current, key), kIsValueSpecified_Yes);
    EXPECT_TRUE(key.IsEmpty());
}

TEST(ChangeKey, IsNotSpecifiedWhenItIsNull)
{
    Thing thing("p1", L"");
    thing.SetChangeKey(ChangeKeyText(u"key"));
    thing.SetChangeKey(ChangeKeyText(nullptr));
    UTF8String key("former");
    EXPECT_EQ(thing.ChangeKey(kSnapshotVersion_Current, key), kIsValueSpecified_No);
    EXPECT_EQ(key, UTF8String("former"));
}

TEST(VersionPersistentId, IsSpecifiedUnlessItIsEmpty)
{
    Thing thing("p1", L"");
    thing.SetVersionPersistentId("v1");
    UTF8String id;
    EXPECT_EQ(thing.VersionPersistentId(id), kIsValueSpecified_Yes);
    EXPECT_EQ(id, UTF8String("v1"));
    thing.SetVersionPersistentId("");
    EXPECT_EQ(thing.VersionPersistentId(id), kIsValueSpecified_No);
    EXPECT_EQ(id, UTF8String("v1"));
}

TEST(ExtensionData, IsTheFirstOfItsTypeAmongThoseAdded)
{
    Thing thing("p1", L"");
    thing.AddExtensionDataContent(Content("a", "first a"));
    thing.AddExtensionDataContent(Content("b", "first b"));
    thing.AddExtensionDataContent(Content("a", "second a"));
    EXPECT_EQ(DataOf(thing, "a"), "first a");
    EXPECT_EQ(DataOf(thing, "b"), "first b");
    EXPECT_EQ(DataOf(thing, "A"), "none");
    EXPECT_EQ(DataOf(thing, ""), "none");
}

TEST(ExtensionData, WithoutATypeIsFoundByTheEmptyOne)
{
    Thing thing("p1", L"");
    thing.AddExtensionDataContent(Content("", "typeless"));
    EXPECT_EQ(DataOf(thing, ""), "typeless");
}

TEST(ExtensionData, IsAppendedFromAVectorThatIsLeftEmpty)
{
    Thing thing("p1", L"");
    thing.AddExtensionDataContent(Content("a", "first a"));
    std::vector<ExtensionDataContent> contents;
    contents.push_back(Content("a", "second a"));
    contents.push_back(Content("b", "first b"));
    contents.push_back(Content("b", "second b"));
    thing.AddExtensionDataContent(contents);
    EXPECT_TRUE(contents.empty());
    thing.AddExtensionDataContent(contents);
    EXPECT_EQ(DataOf(thing, "a"), "first a");
    EXPECT_EQ(DataOf(thing, "b"), "first b");
}

TEST(ExtensionData, IsAnsweredWhole)
{
    ExtensionDataContent content = Content("a", "data");
    content.SetLengthUnit(kUnitType_Inch);
    Matrix3d transform;
    transform.SetElement(0, 3, 5.0);
    content.SetTransform(transform);
    IdSet path;
    path.AddWithoutUniquenessCheck("i1");
    path.AddWithoutUniquenessCheck("i2");
    content.SetObjectPath(path, ExtensionDataContent::kObjectPathType_Occurrence);
    Thing thing("p1", L"");
    thing.AddExtensionDataContent(content);

    ExtensionDataContent answered;
    ASSERT_EQ(thing.ExtensionDataByTypeId("a", answered), kIsValueSpecified_Yes);
    UnitTypeEnum unit = kUnitType_Unknown;
    EXPECT_EQ(answered.LengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Inch);
    Matrix3d answeredTransform;
    EXPECT_EQ(answered.Transform(answeredTransform), kIsValueSpecified_Yes);
    EXPECT_EQ(answeredTransform.Element(0, 3), 5.0);
    EXPECT_EQ(answered.ObjectPathType(), ExtensionDataContent::kObjectPathType_Occurrence);
    ASSERT_EQ(answered.ObjectPath().Size(), 2U);
    EXPECT_EQ(answered.ObjectPath().At(1), UTF8String("i2"));
}

TEST(PropertyIds, AreAnsweredInOrderWithTheirRepeats)
{
    Thing thing("p1", L"");
    for (char const* const id : {"b", "a", "b"})
        thing.AddPropertyId(id);
    IdSet const ids = thing.PropertyIds();
    ASSERT_EQ(ids.Size(), 3U);
    EXPECT_EQ(ids.At(0), UTF8String("b"));
    EXPECT_EQ(ids.At(1), UTF8String("a"));
    EXPECT_EQ(ids.At(2), UTF8String("b"));
}

}  // namespace
