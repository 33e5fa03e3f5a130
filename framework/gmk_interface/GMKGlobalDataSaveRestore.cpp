#include "framework/gmk_interface/GMKGlobalDataSaveRestore.h"

namespace KVR
{

GMKGlobalDataSaveRestore::GMKGlobalDataSaveRestore() noexcept : m_saved(gki_global_data()) {}

GMKGlobalDataSaveRestore::~GMKGlobalDataSaveRestore()
{
    gki_global_data() = m_saved;
}

}  // namespace KVR
