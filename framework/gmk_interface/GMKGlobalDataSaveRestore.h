#pragma once

#include "framework/gmk_interface/Export.h"
#include "framework/kernel/global_data.h"

namespace KVR
{

/// Keeps the kernel's global data of the calling thread, the active history stream among it, and puts it back at the
/// end of the scope. A stream that was active has to live that long.
class KVR_GMK_INTERFACE_API GMKGlobalDataSaveRestore
{
public:
    GMKGlobalDataSaveRestore() noexcept;
    ~GMKGlobalDataSaveRestore();
    GMKGlobalDataSaveRestore(GMKGlobalDataSaveRestore const&) = delete;
    GMKGlobalDataSaveRestore& operator=(GMKGlobalDataSaveRestore const&) = delete;

private:
    GLOBAL_DATA m_saved;
};

}  // namespace KVR
