#pragma once

#include <cstddef>
#include <map>
#include <xercesc/framework/MemoryManager.hpp>

#include "framework/xml_util/Export.h"

namespace KVR
{

/// Where a parser gets memory for a document. What is asked for in large pieces, which are nodes and long texts, comes
/// from large pages, unless the document is small: in pages of 4 KiB the faults take as much time as a tenth of the
/// parse. A document for which large pages cost more than they save gets small ones, a piece's all at once. All else is
/// asked for elsewhere.
class KVR_XML_UTIL_API DocumentMemory final : public xercesc::MemoryManager
{
public:
    /// `small` is to outlive it, as it outlives the parser.
    explicit DocumentMemory(xercesc::MemoryManager* small) noexcept : m_small(small) {}
    ~DocumentMemory() override;
    DocumentMemory(DocumentMemory const&) = delete;
    DocumentMemory& operator=(DocumentMemory const&) = delete;

    /// That of the manager for all else: what is thrown may outlive the document.
    xercesc::MemoryManager* getExceptionMemoryManager() override { return m_small->getExceptionMemoryManager(); }
    /// Throws xercesc::OutOfMemoryException.
    void* allocate(XMLSize_t size) override;
    /// Gives back what allocate answered, or null.
    void deallocate(void* memory) override;

private:
    // Pieces are cut off a block one after the other, and it goes when the last of them has gone.
    struct Block
    {
        std::size_t size = 0;
        std::size_t used = 0;
        std::size_t pieces = 0;
    };
    using Blocks = std::map<std::byte*, Block>;

    Blocks::iterator NewBlock(std::size_t size);
    void Free(Blocks::iterator block) noexcept;

    xercesc::MemoryManager* m_small;
    std::size_t m_asked = 0;
    Blocks m_blocks;
    /// The block that pieces are cut off.
    Blocks::iterator m_current = m_blocks.end();
};

}  // namespace KVR
