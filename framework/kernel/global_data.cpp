#include "framework/kernel/global_data.h"

namespace KVR
{

GLOBAL_DATA& gki_global_data() noexcept
{
    thread_local GLOBAL_DATA data;
    return data;
}

ActiveStreamScope::ActiveStreamScope(HISTORY_STREAM* stream) noexcept : m_former(gki_global_data().activeStream)
{
    gki_global_data().activeStream = stream;
}

ActiveStreamScope::~ActiveStreamScope()
{
    gki_global_data().activeStream = m_former;
}

}  // namespace KVR
