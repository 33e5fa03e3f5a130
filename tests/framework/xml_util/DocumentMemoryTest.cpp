#include "framework/xml_util/DocumentMemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <utility>
#include <vector>

#include "tests/framework/xml_util/AllocationMeter.h"

namespace
{

using KVR::DocumentMemory;

// Counts what it is asked for.
class Small final : public xercesc::MemoryManager
{
public:
    xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }
    void* allocate(XMLSize_t size) override
    {
        ++count;
        return std::malloc(size);
    }
    void deallocate(void* memory) override
    {
        --count;
        std::free(memory);
    }

    int count = 0;
};

constexpr std::size_t kPiece = 512 * 1024;
constexpr std::size_t kText = 3 * 1024 * 1024;

TEST(DocumentMemory, SmallPiecesAndSmallDocumentsAreServedElsewhere)
{
    Small small;
    DocumentMemory memory(&small);
    void* const table = memory.allocate(1000);
    void* const nodes = memory.allocate(kPiece);
    EXPECT_EQ(small.count, 2);
    memory.deallocate(nodes);
    memory.deallocate(table);
    EXPECT_EQ(small.count, 0);
    EXPECT_EQ(memory.getExceptionMemoryManager(), &small);
}

TEST(DocumentMemory, ALongTextAndTheNodesOfALargeDocumentAreNot)
{
    Small small;
    DocumentMemory memory(&small);
    memory.deallocate(memory.allocate(kText));
    std::vector<void*> pieces;
    for (int i = 0; i < 20; ++i)
        pieces.push_back(memory.allocate(kPiece));
    EXPECT_EQ(small.count, 8);
    for (void* const piece : pieces)
        memory.deallocate(piece);
    EXPECT_EQ(small.count, 0);
}

TEST(DocumentMemory, WhatGoesInAnyOrderIsGivenBack)
{
    Small small;
    AllocationMeter const meter;
    DocumentMemory memory(&small);
    std::mt19937 random(3);
    std::vector<std::pair<unsigned char*, std::size_t>> pieces;
    for (int i = 0; i < 300; ++i)
    {
        std::size_t const size = random() % 4 == 0 ? kText + random() % 100 : 1 + random() % kPiece;
        auto* const piece = static_cast<unsigned char*>(memory.allocate(size));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece) % alignof(std::max_align_t), 0U);
        std::memset(piece, i % 256, size);
        pieces.emplace_back(piece, size);
        if (random() % 2 == 0)
        {
            std::swap(pieces[random() % pieces.size()], pieces.back());
            auto const [gone, length] = pieces.back();
            EXPECT_EQ(gone[0], gone[length - 1]);
            memory.deallocate(gone);
            pieces.pop_back();
        }
    }
    for (auto const& [piece, size] : pieces)
    {
        EXPECT_EQ(piece[0], piece[size - 1]);
        memory.deallocate(piece);
    }
    pieces.clear();
    pieces.shrink_to_fit();
    EXPECT_EQ(small.count, 0);
    EXPECT_EQ(meter.Live(), 0);
}

}  // namespace
