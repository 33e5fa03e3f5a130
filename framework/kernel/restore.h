#pragma once

#include <cstdint>
#include <cstdio>
#include <utility>
#include <vector>

#include "framework/kernel/Export.h"
#include "framework/kernel/outcome.h"

namespace KVR
{

class ENTITY_LIST;

/// Whether a store whose content is not what was written may be restored all the same.
enum insecure_restore_option : int
{
    kInsecureRestore_Forbidden = 0,
    /// For stores that are trusted. Damaged bytes then reach Open CASCADE, whose readers may crash on them.
    kInsecureRestore_Allowed = 1
};

/// Restores the entities of a store. A store is checked as a whole before any of it is decoded: its head, its length,
/// and a digest of its content.
class KVR_KERNEL_API GKI_RESTORE
{
public:
    /// `file` is open for reading, can be positioned, stands at the store's beginning, and is not owned. `part` is of
    /// no meaning.
    GKI_RESTORE(std::FILE* file, bool textMode, int part);

    /// A bad outcome for a value that is none of the enumeration.
    outcome set_allow_insecure_restore(insecure_restore_option option);
    /// Appends the top-level entities of the store in their order. They belong to the active stream; when none is
    /// active nothing is restored. After a bad outcome the list is as it was. Throws std::bad_alloc when memory runs
    /// out, also in Open CASCADE.
    outcome execute_restore(ENTITY_LIST& entities);
    /// After a restore: whether the content was not what its digest says. `restored` tells whether it was decoded all
    /// the same, and `count` the number of issues.
    outcome security_issue_found(bool& found, bool& restored, int& count) const;
    /// After a good restore: where the rows of the store's table stand in the file, in the order of the entities, each
    /// from its first byte to the one behind its last.
    std::vector<std::pair<std::uint64_t, std::uint64_t>> const& row_ranges() const noexcept { return m_rowRanges; }

private:
    std::FILE* m_file;
    bool m_textMode;
    bool m_allowsInsecure = false;
    bool m_isInsecure = false;
    bool m_isRestored = false;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> m_rowRanges;
};

/// Writes entities as a store.
class KVR_KERNEL_API GKI_SAVE
{
public:
    /// `file` is open for reading and writing, empty, and not owned.
    GKI_SAVE(std::FILE* file, bool textMode);

    /// Writes the entities with their data ids and those of their faces and edges. A bad outcome when the file system
    /// refuses, with some of the file written.
    outcome execute_save(ENTITY_LIST const& entities);

private:
    std::FILE* m_file;
    bool m_textMode;
};

}  // namespace KVR
