#include "mesh/PolygonSlab.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "mesh/PolygonSlabBuilder.h"
#include "mesh/StoreMemory.h"

namespace KVR::Test
{

namespace
{

// What a polygon was given.
struct Given
{
    std::vector<std::int32_t> vertices;
    std::vector<std::int32_t> normals;
    std::vector<std::int32_t> sets;
    std::vector<std::int32_t> textures;
    std::uint32_t slot = 0;
};

std::vector<std::int32_t> Listed(EditablePolygon::IndexList const& list)
{
    return {list.data, list.data + list.count};
}

void AddWhole(PolygonSlabBuilder& slab, Given const& given)
{
    std::vector<std::uint64_t> const vertices(given.vertices.begin(), given.vertices.end());
    std::vector<std::uint64_t> const normals(given.normals.begin(), given.normals.end());
    auto const bytes = [](std::vector<std::uint64_t> const& words)
    { return words.empty() ? nullptr : reinterpret_cast<unsigned char const*>(words.data()); };
    slab.Add(static_cast<std::uint32_t>(vertices.size()), bytes(vertices), bytes(normals), given.slot);
}

void AddInSteps(PolygonSlabBuilder& slab, Given const& given)
{
    auto const copy = [](std::vector<std::int32_t> const& list, std::int32_t* place)
    { std::memcpy(place, list.data(), list.size() * sizeof(std::int32_t)); };
    copy(given.vertices, slab.Begin(static_cast<std::uint32_t>(given.vertices.size())));
    if (!given.normals.empty())
    {
        copy(given.normals, slab.AddNormals());
        slab.EndNormals();
    }
    if (!given.sets.empty())
        slab.SetTextures(given.sets, given.textures);
    slab.End(given.slot);
}

void ExpectHeld(PolygonSlab const& slab, std::vector<Given> const& polygons)
{
    ASSERT_EQ(slab.Count(), polygons.size());
    for (std::size_t i = 0; i < polygons.size(); ++i)
    {
        EditablePolygon const& polygon = *slab.At(i);
        ASSERT_EQ(Listed(polygon.VertexIndices()), polygons[i].vertices) << i;
        ASSERT_EQ(Listed(polygon.NormalIndices()), polygons[i].normals) << i;
        ASSERT_EQ(Listed(polygon.TextureSetIndices()), polygons[i].sets) << i;
        ASSERT_EQ(Listed(polygon.TextureVertexIndices()), polygons[i].textures) << i;
        ASSERT_EQ(slab.MaterialSlotAt(i), polygons[i].slot) << i;
    }
}

// The lists count up from the polygon's number, so that no two polygons are alike.
Given Numbered(std::size_t number, std::size_t vertexCount, bool hasNormals, bool sharesNormals)
{
    Given given;
    given.slot = static_cast<std::uint32_t>(number % 7);
    for (std::size_t i = 0; i < vertexCount; ++i)
    {
        given.vertices.push_back(static_cast<std::int32_t>(number + i));
        if (hasNormals)
            given.normals.push_back(static_cast<std::int32_t>(number + i + (sharesNormals ? 0 : 1)));
    }
    return given;
}

template <class Make>
void ExpectRoundTrip(std::size_t count, Make make)
{
    StoreMemory memory(1 << 20);
    StoreMemory::Blocks blocks;
    PolygonSlab slab;
    PolygonSlabBuilder builder(slab, memory, blocks, {count, 7, true, true});
    std::vector<Given> polygons;
    for (std::size_t i = 0; i < count; ++i)
    {
        polygons.push_back(make(i));
        if (i % 2 == 0 && polygons.back().sets.empty())
            AddWhole(builder, polygons.back());
        else
            AddInSteps(builder, polygons.back());
    }
    builder.Finish();
    ExpectHeld(slab, polygons);
}

TEST(PolygonSlab, PolygonsOfOneSizeAreFoundOverManyPieces)
{
    ExpectRoundTrip(500'000, [](std::size_t i) { return Numbered(i, 3, true, true); });
    ExpectRoundTrip(500'000, [](std::size_t i) { return Numbered(i, 3, true, false); });
    ExpectRoundTrip(500'000, [](std::size_t i) { return Numbered(i, 3, false, false); });
}

TEST(PolygonSlab, APolygonOfAnotherSizeMayComeAtAnyPlace)
{
    for (std::size_t const odd : {0U, 1U, 2U, 149'796U, 149'797U, 149'798U, 399'999U})
        ExpectRoundTrip(400'000, [&](std::size_t i) { return Numbered(i, i == odd ? 40 : 3, true, false); });
}

// A triangle and a quadrangle that share their normals take the same place, but a piece has to hold more for the one.
TEST(PolygonSlab, PolygonsOfOneSizeMayStillFillPiecesDifferently)
{
    ExpectRoundTrip(800'000, [](std::size_t i) { return Numbered(i, i < 500'000 ? 4 : 3, true, true); });
    ExpectRoundTrip(800'000, [](std::size_t i) { return Numbered(i, i < 500'000 ? 3 : 4, true, true); });
}

TEST(PolygonSlab, NormalsMayBeTheVertexIndicesForSomePolygons)
{
    ExpectRoundTrip(1000, [](std::size_t i) { return Numbered(i, 3, true, i % 3 == 0); });
    ExpectRoundTrip(1000, [](std::size_t i) { return Numbered(i, 3, true, i % 3 != 0); });
    ExpectRoundTrip(1000, [](std::size_t i) { return Numbered(i, 3, i > 500, true); });
}

TEST(PolygonSlab, AnyMixtureIsHeldAsGiven)
{
    std::mt19937 random(7);
    ExpectRoundTrip(50'000,
                    [&](std::size_t i)
                    {
                        Given given = Numbered(i, 1 + random() % 20, random() % 2 == 0, random() % 2 == 0);
                        if (random() % 4 == 0)
                        {
                            given.sets = {static_cast<std::int32_t>(random() % 3), 5};
                            given.textures.assign(2 * given.vertices.size(), static_cast<std::int32_t>(i));
                        }
                        return given;
                    });
}

TEST(PolygonSlab, APolygonMayBeLargerThanAPiece)
{
    ExpectRoundTrip(3, [](std::size_t i) { return Numbered(i, i == 1 ? 5'000'000 : 3, true, false); });
}

TEST(PolygonSlab, ASlotTooLargeForTheHeadIsHeldAllTheSame)
{
    StoreMemory memory(1 << 20);
    StoreMemory::Blocks blocks;
    PolygonSlab slab;
    PolygonSlabBuilder builder(slab, memory, blocks, {3, 1U << 24, true, false});
    std::vector<Given> polygons;
    for (std::uint32_t const slot : {0x00FFFFFFU, 5U, kNoMaterialSlot})
    {
        polygons.push_back(Numbered(slot % 100, 3, true, true));
        polygons.back().slot = slot;
        AddWhole(builder, polygons.back());
    }
    builder.Finish();
    ExpectHeld(slab, polygons);
}

TEST(StoreMemory, ABlockLivesAsLongAsTheLastThatHoldsIt)
{
    StoreMemory::Blocks second;
    std::byte* bytes = nullptr;
    {
        StoreMemory::Blocks first;
        StoreMemory memory(64 * 1024);
        std::memset(memory.Take(100, first), 1, 100);
        bytes = memory.Take(100, second);
        std::memset(bytes, 2, 100);
        EXPECT_EQ(first.Count(), 1U);
        EXPECT_EQ(first.Last(), second.Last());
    }
    EXPECT_EQ(std::count(bytes, bytes + 100, std::byte{2}), 100);
}

TEST(StoreMemory, WhatFillsMostOfABlockGetsOneOfItsOwn)
{
    StoreMemory::Blocks blocks;
    StoreMemory memory(64 * 1024);
    memory.Take(8, blocks);
    StoreMemory::Block const shared = blocks.Last();
    memory.Take(10'000'000, blocks);
    EXPECT_NE(blocks.Last(), shared);
    memory.Take(8, blocks);
    EXPECT_EQ(blocks.Count(), 2U);
}

// The block of an object is what is left of the memory once all else is gone.
TEST(StoreMemory, AnObjectKeepsItsBlockAndFreesItLast)
{
    struct Object : InStoreMemory
    {
        std::array<int, 100> numbers{};
    };
    std::unique_ptr<Object> first;
    std::unique_ptr<Object> second;
    {
        StoreMemory memory(64 * 1024);
        first.reset(new (memory) Object);
        second.reset(new (memory) Object);
    }
    first->numbers.fill(1);
    first.reset();
    second->numbers.fill(2);
    EXPECT_EQ(second->numbers.back(), 2);
    auto const alone = std::make_unique<Object>();
    alone->numbers.fill(3);
    EXPECT_EQ(alone->numbers.front(), 3);
}

TEST(StoreMemory, OnlyTheEndOfTheLastPieceIsTakenBack)
{
    StoreMemory::Blocks blocks;
    StoreMemory memory(64 * 1024);
    std::byte* const piece = memory.Take(800, blocks);
    memory.GiveBack(piece + 80, piece + 800);
    EXPECT_EQ(memory.Take(8, blocks), piece + 80);
    memory.GiveBack(piece, piece + 800);
    EXPECT_EQ(memory.Take(8, blocks), piece + 88);
}

}  // namespace

}  // namespace KVR::Test
