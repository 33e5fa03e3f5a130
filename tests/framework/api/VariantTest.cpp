#include "framework/api/Variant.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "framework/api/Blob.h"
#include "framework/api/VitreolSerializedAsset.h"

namespace
{

using namespace KVR;

std::string BytesOf(void const* data, unsigned long long size)
{
    return data ? std::string(static_cast<char const*>(data), static_cast<std::size_t>(size)) : std::string();
}

TEST(Blob, CopiesTheBytes)
{
    std::string bytes("a\0b\xFF", 4);
    Blob const blob(bytes.size(), bytes.data());
    bytes.assign(4, 'x');
    EXPECT_EQ(blob.Size(), 4U);
    EXPECT_EQ(BytesOf(blob.Data(), blob.Size()), std::string("a\0b\xFF", 4));
    EXPECT_NE(blob.Data(), bytes.data());
}

TEST(Blob, IsEmptyWithoutBytes)
{
    for (Blob const& blob : {Blob(), Blob(0, "abc"), Blob(0, nullptr), Blob(3, nullptr)})
    {
        EXPECT_EQ(blob.Size(), 0U);
        EXPECT_EQ(blob.Data(), nullptr);
    }
}

TEST(Blob, ANullPointerWithAHugeSizeTakesNoMemory)
{
    EXPECT_EQ(Blob(std::numeric_limits<unsigned long long>::max(), nullptr).Size(), 0U);
}

TEST(Blob, CopiesAreIndependentAndMovesTakeTheStorage)
{
    auto original = std::make_unique<Blob>(3, "abc");
    Blob copy(*original);
    void const* const storage = original->Data();
    Blob const moved(std::move(*original));
    original.reset();
    EXPECT_EQ(moved.Data(), storage);
    EXPECT_NE(copy.Data(), storage);
    EXPECT_EQ(BytesOf(copy.Data(), copy.Size()), "abc");
    copy = Blob(1, "z");
    EXPECT_EQ(BytesOf(copy.Data(), copy.Size()), "z");
    EXPECT_EQ(BytesOf(moved.Data(), moved.Size()), "abc");
}

void ExpectOnly(Variant const& variant, Variant::KindEnum kind)
{
    EXPECT_EQ(variant.Kind(), kind);
    EXPECT_EQ(variant.AStringValue() != nullptr, kind == Variant::kKind_AString);
    EXPECT_EQ(variant.IdSetValue() != nullptr, kind == Variant::kKind_IdSet);
    EXPECT_EQ(variant.BlobValue() != nullptr, kind == Variant::kKind_Blob);
}

TEST(Variant, IsOfNoKindUntilSet)
{
    ExpectOnly(Variant(), Variant::kKind_None);
}

TEST(Variant, KindsHaveTheNumbersThatAScenesWrites)
{
    EXPECT_EQ(int(Variant::kKind_None), 0);
    EXPECT_EQ(int(Variant::kKind_AString), 5);
    EXPECT_EQ(int(Variant::kKind_Blob), 8);
    EXPECT_EQ(int(Variant::kKind_IdSet), 9);
}

TEST(Variant, HoldsTheValueThatWasSetLast)
{
    IdSet ids;
    ids.AddWithUniquenessCheck("a");
    Variant variant;

    variant.SetAStringValue("text");
    ExpectOnly(variant, Variant::kKind_AString);
    EXPECT_EQ(*variant.AStringValue(), UTF8String("text"));

    variant.SetIdSetValue(ids);
    ExpectOnly(variant, Variant::kKind_IdSet);
    EXPECT_EQ(*variant.IdSetValue(), ids);

    variant.SetBlobValue(Blob(2, "xy"));
    ExpectOnly(variant, Variant::kKind_Blob);
    EXPECT_EQ(BytesOf(variant.BlobValue()->Data(), variant.BlobValue()->Size()), "xy");

    variant.SetAStringValue("");
    ExpectOnly(variant, Variant::kKind_AString);
    EXPECT_TRUE(variant.AStringValue()->IsEmpty());
}

TEST(Variant, CopiesAreIndependent)
{
    Variant variant;
    variant.SetAStringValue("first");
    Variant const copy(variant);
    Variant assigned;
    assigned = variant;
    variant.SetBlobValue(Blob());
    ExpectOnly(variant, Variant::kKind_Blob);
    EXPECT_EQ(*copy.AStringValue(), UTF8String("first"));
    EXPECT_EQ(*assigned.AStringValue(), UTF8String("first"));
}

TEST(VitreolSerializedAsset, AnswersTypeAndBytes)
{
    VitreolSerializedAsset const asset("Generic", Blob(3, "abc"));
    EXPECT_EQ(asset.Type(), UTF8String("Generic"));
    EXPECT_EQ(asset.Size(), 3U);
    EXPECT_EQ(BytesOf(asset.Data(), asset.Size()), "abc");
    VitreolSerializedAsset const empty("", Blob());
    EXPECT_EQ(empty.Size(), 0U);
    EXPECT_EQ(empty.Data(), nullptr);
    std::string const text = "def";
    auto const held = std::make_shared<std::string const>(text);
    VitreolSerializedAsset const sharing("Generic", {held, held->data()}, text.size());
    EXPECT_EQ(sharing.Data(), held->data());
    EXPECT_EQ(held.use_count(), 2);
    EXPECT_EQ(VitreolSerializedAsset("", held, 0).Data(), nullptr);
}

}  // namespace
