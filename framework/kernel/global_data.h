#pragma once

#include "framework/kernel/Export.h"

namespace KVR
{

class HISTORY_STREAM;

/// What the kernel keeps for the calling thread.
struct GLOBAL_DATA
{
    /// The stream that new entities and curves belong to; not owned. Without one they are their maker's.
    HISTORY_STREAM* activeStream = nullptr;
    /// Below this distance two points are one, in the length unit of the bodies.
    double resabs = 1e-6;
    /// The same for normalised quantities.
    double resnor = 1e-10;
};

/// The data of the calling thread, to be read and changed.
KVR_KERNEL_API GLOBAL_DATA& gki_global_data() noexcept;

/// Another stream is active for the length of a scope.
class KVR_KERNEL_API ActiveStreamScope
{
public:
    explicit ActiveStreamScope(HISTORY_STREAM* stream) noexcept;
    ~ActiveStreamScope();
    ActiveStreamScope(ActiveStreamScope const&) = delete;
    ActiveStreamScope& operator=(ActiveStreamScope const&) = delete;

private:
    HISTORY_STREAM* m_former;
};

}  // namespace KVR
