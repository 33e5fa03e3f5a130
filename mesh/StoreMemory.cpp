#include "mesh/StoreMemory.h"

#include <algorithm>
#include <new>

#include "mesh/LargePages.h"

namespace KVR
{

namespace
{

constexpr std::size_t kLargestBlock = 8 * 1024 * 1024;
constexpr std::size_t kSmallestBlock = 4 * 1024;
constexpr std::size_t kAlignment = 8;

struct FreeBlock
{
    std::align_val_t alignment;
    void operator()(std::byte* block) const noexcept { ::operator delete(block, alignment); }
};

std::shared_ptr<std::byte> NewBlock(std::size_t size)
{
    // A block of large pages begins with one.
    std::align_val_t const alignment{size < kLargePage ? kAlignment : kLargePage};
    auto* const block = static_cast<std::byte*>(::operator new(size, alignment));
    AdviseLargePages(block, size);
    return {block, FreeBlock{alignment}};
}

}  // namespace

StoreMemory::StoreMemory(unsigned long long expected)
    : m_blockSize(static_cast<std::size_t>(std::clamp<unsigned long long>(expected, kSmallestBlock, kLargestBlock)))
{
}

std::byte* StoreMemory::Take(std::size_t size, Blocks& blocks)
{
    size = (size + kAlignment - 1) / kAlignment * kAlignment;
    // What would fill most of a block gets one of its own.
    if (size > m_blockSize / 2)
    {
        blocks.push_back(NewBlock(size));
        return blocks.back().get();
    }
    if (static_cast<std::size_t>(m_end - m_next) < size)
    {
        m_block = NewBlock(m_blockSize);
        m_next = m_block.get();
        m_end = m_next + m_blockSize;
    }
    if (blocks.empty() || blocks.back() != m_block)
        blocks.push_back(m_block);
    std::byte* const taken = m_next;
    m_next += size;
    return taken;
}

void StoreMemory::GiveBack(std::byte* unused, std::byte const* endOfPiece) noexcept
{
    if (endOfPiece == m_next)
        m_next = unused;
}

}  // namespace KVR
