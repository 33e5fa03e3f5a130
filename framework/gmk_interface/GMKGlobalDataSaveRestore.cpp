#include "framework/gmk_interface/GMKGlobalDataSaveRestore.h"

#include "framework/kernel/history_stream.h"

namespace KVR
{

GMKGlobalDataSaveRestore::GMKGlobalDataSaveRestore() noexcept : m_saved(gki_global_data()) {}

GMKGlobalDataSaveRestore::~GMKGlobalDataSaveRestore()
{
    if (m_saved.activeStream && !gki_is_history_stream(m_saved.activeStream))
        m_saved.activeStream = nullptr;
    gki_global_data() = m_saved;
}

}  // namespace KVR
