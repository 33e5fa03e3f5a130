#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "framework/kernel/Export.h"
#include "framework/kernel/entity.h"

namespace KVR
{

class StoreReadBuffer;

/// What a store says of its entities beside their shapes. Exported for the fuzz target alone, as is the buffer.
struct KVR_KERNEL_API StoreTable
{
    struct Row
    {
        ENTITY_KIND kind = kEntity_Body;
        std::vector<std::string> dataIds;
        std::vector<BODY::SubId> faceIds;
        std::vector<BODY::SubId> edgeIds;
        /// Where it stands in the content, from its first byte to the one behind its last; set by Read alone.
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
    };
    std::vector<Row> rows;

    /// Reads the table from the front of a store's content. False when it is damaged: no list grows beyond what the
    /// content holds.
    bool Read(StoreReadBuffer& content, bool textMode);
    /// Failures show in the stream.
    void Write(std::ostream& out, bool textMode) const;
};

}  // namespace KVR
