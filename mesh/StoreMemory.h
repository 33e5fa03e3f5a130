#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstddef>
#include <memory>
#include <vector>

namespace KVR
{

/// Memory for what one store holds, taken from large blocks that several objects share: an object costs no allocations
/// of its own, and large blocks cost few page faults. A block lives until the last that holds it is gone.
class StoreMemory
{
public:
    class BlockMemory;
    /// One pointer, and no atomic count, since a scene is read and freed by one thread.
    using Block = boost::intrusive_ptr<BlockMemory>;

    /// What keeps the blocks of one object: mostly one, which takes no list.
    class Blocks
    {
    public:
        /// Nothing when it was the last one held already.
        void Hold(Block const& block);
        std::size_t Count() const noexcept { return (m_first ? 1 : 0) + (m_others ? m_others->size() : 0); }
        Block const& Last() const noexcept { return m_others ? m_others->back() : m_first; }

    private:
        Block m_first;
        std::unique_ptr<std::vector<Block>> m_others;
    };

    /// `expected` is about what the whole store will need, in bytes; blocks are no larger. A store that may need far
    /// less says how large the `first` is to be; those behind it double.
    explicit StoreMemory(unsigned long long expected) : StoreMemory(expected, expected) {}
    StoreMemory(unsigned long long expected, unsigned long long first);

    /// So many bytes, not cleared and aligned for doubles and pointers, which live as long as `blocks`, or `block`.
    /// Throws std::bad_alloc.
    std::byte* Take(std::size_t size, Blocks& blocks);
    std::byte* Take(std::size_t size, Block& block);
    /// Takes back the end of the piece taken last, from `unused` on; nothing when another was taken since.
    void GiveBack(std::byte* unused, std::byte const* endOfPiece) noexcept;

    friend void intrusive_ptr_add_ref(BlockMemory* block) noexcept;
    friend void intrusive_ptr_release(BlockMemory* block) noexcept;

private:
    std::byte* TakeOrMake(std::size_t size, Block& own);

    std::size_t m_largest;
    /// Of the next one.
    std::size_t m_blockSize;
    Block m_block;
    std::byte* m_next = nullptr;
    std::byte* m_end = nullptr;
};

/// A base for objects of which a store holds many: `new (memory) Object` puts one into the store's memory. Whoever
/// deletes it need not know; its block is let go. An object made with a plain `new` has memory of its own.
class InStoreMemory
{
public:
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t size, StoreMemory& memory);
    static void operator delete(void* object) noexcept;
    static void operator delete(void* object, StoreMemory& memory) noexcept;

protected:
    InStoreMemory() = default;
    ~InStoreMemory() = default;
};

}  // namespace KVR
