#include "framework/xml_util/DocumentMemory.h"

#include <iterator>
#include <new>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "framework/api/LargePages.h"

namespace KVR
{

namespace
{

// Smaller pieces are texts and tables of the parser, which come and go.
constexpr std::size_t kLeastPiece = 16 * 1024;
// Documents up to it never see a large page, of which the last is mostly empty.
constexpr std::size_t kSmallDocument = 2 * kLargePage;
// What lies beyond it is asked for in small pages, many at once: on a virtual machine gigabytes of fresh large pages
// cost more than they save, as each has to be fetched from the machine below.
constexpr std::size_t kMostLarge = 96 * kLargePage;
constexpr std::size_t kBlockSize = 2 * kLargePage;
constexpr std::size_t kAlignment = alignof(std::max_align_t);
constexpr std::align_val_t kBlockAlignment{kLargePage};

}  // namespace

DocumentMemory::~DocumentMemory()
{
    while (!m_blocks.empty())
        Free(m_blocks.begin());
}

DocumentMemory::Blocks::iterator DocumentMemory::NewBlock(std::size_t size)
{
    auto* const bytes = static_cast<std::byte*>(::operator new(size, kBlockAlignment));
    try
    {
        AdviseLargePages(bytes, size);
        return m_blocks.emplace(bytes, Block{size, 0, 0}).first;
    }
    catch (...)
    {
        ::operator delete(bytes, kBlockAlignment);
        throw;
    }
}

void DocumentMemory::Free(Blocks::iterator block) noexcept
{
    if (block == m_current)
        m_current = m_blocks.end();
    ::operator delete(block->first, kBlockAlignment);
    m_blocks.erase(block);
}

void* DocumentMemory::allocate(XMLSize_t size)
{
    bool const isBlock = size > kBlockSize / 2;
    if (size < kLeastPiece)
        return m_small->allocate(size);
    if (!isBlock)
        m_asked += size;
    if (!isBlock && m_asked <= kSmallDocument)
        return m_small->allocate(size);
    if (!isBlock && m_asked > kMostLarge)
    {
        void* const piece = m_small->allocate(size);
        PopulatePages(piece, size);
        return piece;
    }
    try
    {
        std::size_t const wanted = size + (kAlignment - size % kAlignment) % kAlignment;
        auto block = m_current;
        if (isBlock)
            block = NewBlock(wanted);
        else if (block == m_blocks.end() || block->second.size - block->second.used < wanted)
            block = m_current = NewBlock(kBlockSize);
        std::byte* const piece = block->first + block->second.used;
        block->second.used += wanted;
        ++block->second.pieces;
        return piece;
    }
    catch (std::bad_alloc const&)
    {
        throw xercesc::OutOfMemoryException();
    }
}

void DocumentMemory::deallocate(void* memory)
{
    auto* const piece = static_cast<std::byte*>(memory);
    auto const behind = m_blocks.upper_bound(piece);
    if (behind == m_blocks.begin() || piece >= std::prev(behind)->first + std::prev(behind)->second.size)
        m_small->deallocate(memory);
    else if (auto const block = std::prev(behind); --block->second.pieces == 0)
        Free(block);
}

}  // namespace KVR
