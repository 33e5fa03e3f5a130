#pragma once

#include <cstdint>
#include <optional>

namespace KVR
{

struct SectionRecord;

/// What a side file holds, found out without the readers that serve it: in the head of a store, over the heads of
/// assets, or by a parse of a file that is XML.
struct StoreCount
{
    /// Records that it claims to hold; of XML the elements under its root.
    std::uint64_t records = 0;
    /// Of assets and of XML: those that are there whole. Nothing for the others.
    std::optional<std::uint64_t> whole;
    /// In bytes.
    std::uint64_t size = 0;

    /// Of a file that cannot be opened, nothing.
    static StoreCount Of(SectionRecord const& section);

    /// How many of the records its reader had a reason not to reach: the file ends before them, or gave nothing.
    std::uint64_t OutOfReach(SectionRecord const& section) const;
};

}  // namespace KVR
