#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "framework/api/IdSet.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/UniqueIndex.h"

namespace KVR
{

/// One occurrence of a view, with its own visibility, transform and styles.
struct ViewMemberRecord
{
    IdSet occurrencePath;
    // Kept: hidden unless the scene says otherwise, although a view itself is shown.
    bool visible = false;
    Matrix3d transform;
    IdSet styles;
};

/// The members of a view, one for each occurrence path. Adding takes constant time: a member that is replaced stays
/// until the gaps are closed, all at once.
class ViewMembers
{
public:
    /// Appends the member. One of an equal path is gone.
    void Add(ViewMemberRecord record);
    /// To be called behind the last Add; until then the members that were replaced are still counted and answered.
    void CloseGaps();
    std::vector<ViewMemberRecord> const& Records() const noexcept { return m_records; }

private:
    std::vector<ViewMemberRecord> m_records;
    /// For each record, whether it was replaced.
    std::vector<bool> m_isReplaced;
    std::size_t m_replacedCount = 0;
    /// For each different path, in the order in which they were met, where its record stands now.
    std::vector<std::uint32_t> m_places;
    /// From a path to its position in the list above.
    UniqueIndex m_pathIndex;
};

}  // namespace KVR
