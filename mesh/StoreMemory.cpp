#include "mesh/StoreMemory.h"

#include <algorithm>
#include <new>
#include <utility>

#include "framework/api/LargePages.h"

namespace KVR
{

namespace
{

constexpr std::size_t kLargestBlock = 8 * 1024 * 1024;
constexpr std::size_t kSmallestBlock = 4 * 1024;
constexpr std::size_t kAlignment = 8;

}  // namespace

// What stands in front of a block's bytes.
class alignas(kAlignment) StoreMemory::BlockMemory
{
public:
    static Block Make(std::size_t size)
    {
        size += sizeof(BlockMemory);
        // A block of large pages begins with one.
        std::align_val_t const alignment{size < kLargePage ? kAlignment : kLargePage};
        void* const memory = ::operator new(size, alignment);
        AdviseLargePages(memory, size);
        return Block(new (memory) BlockMemory(alignment));
    }

    std::byte* Bytes() noexcept { return reinterpret_cast<std::byte*>(this + 1); }
    void Hold() noexcept { ++m_holders; }
    void LetGo() noexcept
    {
        if (--m_holders == 0)
            ::operator delete(this, m_alignment);
    }

private:
    explicit BlockMemory(std::align_val_t alignment) noexcept : m_alignment(alignment) {}

    std::align_val_t m_alignment;
    std::size_t m_holders = 0;
};

void intrusive_ptr_add_ref(StoreMemory::BlockMemory* block) noexcept
{
    block->Hold();
}
void intrusive_ptr_release(StoreMemory::BlockMemory* block) noexcept
{
    block->LetGo();
}

StoreMemory::StoreMemory(unsigned long long expected, unsigned long long first)
    : m_largest(static_cast<std::size_t>(std::clamp<unsigned long long>(expected, kSmallestBlock, kLargestBlock))),
      m_blockSize(static_cast<std::size_t>(std::clamp<unsigned long long>(first, kSmallestBlock, m_largest)))
{
}

void StoreMemory::Blocks::Hold(Block const& block)
{
    if (Last() == block || m_first == block)
        return;
    if (!m_first)
    {
        m_first = block;
        return;
    }
    if (!m_others)
        m_others = std::make_unique<std::vector<Block>>();
    m_others->push_back(block);
}

std::byte* StoreMemory::Take(std::size_t size, Blocks& blocks)
{
    Block own;
    std::byte* const taken = TakeOrMake(size, own);
    blocks.Hold(own ? own : m_block);
    return taken;
}

std::byte* StoreMemory::Take(std::size_t size, Block& block)
{
    Block own;
    std::byte* const taken = TakeOrMake(size, own);
    block = own ? std::move(own) : m_block;
    return taken;
}

// What would fill most of a block gets one of its own, anything else a part of the block at hand. No holder is counted
// for it here.
std::byte* StoreMemory::TakeOrMake(std::size_t size, Block& own)
{
    size = (size + kAlignment - 1) / kAlignment * kAlignment;
    if (static_cast<std::size_t>(m_end - m_next) < size || size > m_largest / 2)
    {
        if (size > m_largest / 2)
        {
            own = BlockMemory::Make(size);
            return own->Bytes();
        }
        m_blockSize = std::clamp(2 * size, m_blockSize, m_largest);
        m_block = BlockMemory::Make(m_blockSize);
        m_next = m_block->Bytes();
        m_end = m_next + m_blockSize;
        m_blockSize = std::min(2 * m_blockSize, m_largest);
    }
    std::byte* const taken = m_next;
    m_next += size;
    return taken;
}

void StoreMemory::GiveBack(std::byte* unused, std::byte const* endOfPiece) noexcept
{
    if (endOfPiece == m_next)
        m_next = unused;
}

namespace
{

// What stands in front of an object: what keeps its memory.
struct Front
{
    StoreMemory::Block block;
};

}  // namespace

void* InStoreMemory::operator new(std::size_t size)
{
    return new (::operator new(sizeof(Front) + size)) Front{} + 1;
}

void* InStoreMemory::operator new(std::size_t size, StoreMemory& memory)
{
    StoreMemory::Block block;
    std::byte* const place = memory.Take(sizeof(Front) + size, block);
    return new (place) Front{std::move(block)} + 1;
}

void InStoreMemory::operator delete(void* object) noexcept
{
    if (!object)
        return;
    Front* const front = static_cast<Front*>(object) - 1;
    // The last to let a block go frees the front with it.
    StoreMemory::Block const block = std::move(front->block);
    front->~Front();
    if (!block)
        ::operator delete(front);
}

void InStoreMemory::operator delete(void* object, StoreMemory&) noexcept
{
    operator delete(object);
}

}  // namespace KVR
