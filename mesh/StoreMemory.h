#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace KVR
{

/// Memory for what the meshes of one store hold, taken from large blocks that several meshes share: a mesh costs no
/// allocations of its own, and large blocks cost few page faults. A block lives until the last mesh in it is gone.
class StoreMemory
{
public:
    /// What keeps the blocks of one mesh.
    using Blocks = std::vector<std::shared_ptr<std::byte>>;

    /// `expected` is about what the whole store will need, in bytes; blocks are no larger.
    explicit StoreMemory(unsigned long long expected);

    /// So many bytes, not cleared and aligned for doubles and pointers, which live as long as `blocks`. Throws
    /// std::bad_alloc.
    std::byte* Take(std::size_t size, Blocks& blocks);
    /// Takes back the end of the piece taken last, from `unused` on; nothing when another was taken since.
    void GiveBack(std::byte* unused, std::byte const* endOfPiece) noexcept;

private:
    std::size_t m_blockSize;
    std::shared_ptr<std::byte> m_block;
    std::byte* m_next = nullptr;
    std::byte* m_end = nullptr;
};

}  // namespace KVR
