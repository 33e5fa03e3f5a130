#pragma once

namespace KVR
{

/// As long as there is one, Open CASCADE's small blocks come from the caches that the C library keeps for each thread.
/// Open CASCADE asks for blocks of zeros, for which the C library goes past these caches to an arena that it locks; a
/// tenth of the time of reading a STEP file, or of making one, goes there. Blocks are freed as before, at any time.
///
/// Without effect where the environment chooses a memory manager of Open CASCADE's own (MMGT_OPT), and where another
/// library than this one comes before Open CASCADE.
class ThreadBlocks
{
public:
    ThreadBlocks() noexcept;
    ~ThreadBlocks();
    ThreadBlocks(ThreadBlocks const&) = delete;
    ThreadBlocks& operator=(ThreadBlocks const&) = delete;

    /// Whether that is so now.
    static bool IsInUse() noexcept;

private:
    int m_uses;
};

}  // namespace KVR
